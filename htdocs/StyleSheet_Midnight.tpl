/* Midnight: a dark room in which the pictures are the light. */
:root {
  color-scheme: dark;
  --desk: #05070B; --page: #0D1017; --side: #131824; --tint: #1B2231; --line: #283145;
  --ink: #E6E9F2; --soft: #949EB5; --link: #FFC46B; --glow: #FFB347;
  --select: #FFB347; --select-ink: #14100A; --marked: #3A3020;
}
body { margin: 0; background: var(--page); color: var(--ink); font: 15px/1.5 "Segoe UI", system-ui, Roboto, "Helvetica Neue", Arial, sans-serif; }
table { color: inherit; font-size: inherit; }
a { color: var(--link); text-decoration: none; }
a:hover { color: #FFE0AE; }
h1 { font-size: 22px; font-weight: 300; letter-spacing: 0.02em; }
h2 { font-size: 13px; font-weight: 600; letter-spacing: 0.08em; text-transform: uppercase; color: var(--soft); }
img[src$="disabled.gif"] { opacity: 0.22; }
img[src^="ShowGraphic"]:not([src*="capture"]) { filter: brightness(0.92); }

.masthead { background: radial-gradient(120% 180% at 20% 0%, #26314F, #0D1017 70%); border-bottom: 1px solid var(--line); }
.masthead h1 { font-size: 34px; }
.masthead p { color: var(--soft); }

.lblAlbumName { font-size: 20px; font-weight: 300; }
.lblPictureList { font-size: 13px; line-height: 1.5; color: var(--soft); }
.lblPictureList a { color: var(--link); }
a .lblPictureList { color: inherit; }
.tdAlbumList { color: var(--soft); }
tr[onclick]:hover > td { background: var(--side); }

td.tdPictureCell[id] { border: 1px solid transparent !important; border-radius: 2px; }
td.tdPictureCell[id]:hover { border-color: var(--glow) !important; background: #000000; }
.tdPictureCell img[src^="ShowPicture"] { box-shadow: 0 0 0 1px #000000, 0 6px 22px rgba(0, 0, 0, 0.7); }

.lblFolder { font-size: 15px; }
.lblFolderSelected { border-radius: 3px; background: var(--select); color: var(--select-ink); }
.lblPictureView, .lblPictureNav { font-size: 13px; color: var(--soft); }
.lblPopularDirs, .lblPopularMedia { font-size: 17px; font-weight: 300; color: var(--ink); }
.lblPopularSubDir { font-size: 14px; }

.tdTopText { background: linear-gradient(90deg, #26314F, #131824) !important; color: #FFFFFF; font: 300 15px/1 "Segoe UI", system-ui, Roboto, Arial, sans-serif; letter-spacing: 0.06em; white-space: nowrap; padding-left: 12px; }
.tdTopText a { float: right; margin-right: 6px; color: var(--link); }
.tdBottomText { border-top: 1px solid var(--line); background: var(--side); color: var(--soft); font: 12px/1.3 "Segoe UI", system-ui, Roboto, Arial, sans-serif; white-space: nowrap; }
.tdBottomText b { font-weight: normal; }
.tdBottomText img { vertical-align: middle; }
.tdBottomText:first-child { width: 100%; max-width: 0; overflow: hidden; text-overflow: ellipsis; }
@media (max-width: 420px) { .tdBottomText { font-size: 11px; } }

.tblTableHeader { background: var(--line); border-radius: 3px; }
.tdTableTitle { padding: 7px 10px; letter-spacing: 0.08em; text-transform: uppercase; font-size: 13px; color: var(--link); }
.tdTableContents { background: var(--side); }
.tdTableRow { padding: 4px 6px; font-size: 13px; border-bottom: 1px solid var(--tint); }
