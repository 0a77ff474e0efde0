/* Paper: prints with white borders on the page of an old album. */
:root {
  color-scheme: light;
  --desk: #D8CCB4; --page: #FBF7EE; --side: #F4EDDD; --tint: #F1E8D4; --line: #DACDB2;
  --ink: #3A2F24; --soft: #7A6A55; --link: #9A3324; --glow: #9A3324;
  --select: #9A3324; --select-ink: #FFF9EE; --marked: #EAD9BA;
}
body { margin: 0; background: var(--page); color: var(--ink); font: 16px/1.5 Georgia, "Iowan Old Style", "Palatino Linotype", "Book Antiqua", "DejaVu Serif", serif; }
table { color: inherit; font-size: inherit; }
a { color: var(--link); text-decoration: none; }
a:hover { text-decoration: underline; text-decoration-thickness: 1px; text-underline-offset: 2px; }
h1 { font-size: 25px; font-weight: normal; }
h2 { font-size: 17px; font-weight: normal; font-style: italic; }
img[src$="disabled.gif"] { opacity: 0.4; }
img[src^="ShowGraphic"]:not([src*="capture"]) { filter: sepia(0.35); }

.masthead { border-bottom: 4px double var(--line); text-align: center; }
.masthead h1 { font-size: 38px; }
.masthead p { font-style: italic; color: var(--soft); }
.panel { border-radius: 0 !important; }

.lblAlbumName { font-size: 22px; }
.lblPictureList { font-size: 14px; line-height: 1.5; color: var(--soft); }
.lblPictureList a { color: var(--link); }
a .lblPictureList { color: inherit; }
.lblPictureList b { font-style: italic; font-weight: normal; }
.tdAlbumList { color: var(--soft); }
tr[onclick]:hover > td { background: var(--side); }

td.tdPictureCell[id] { border: 1px solid transparent !important; }
td.tdPictureCell[id]:hover { border-color: var(--line) !important; }
td.tdPictureCell[id]:hover img[src^="ShowPicture"] { box-shadow: 0 0 0 1px var(--glow), 0 3px 10px rgba(60, 40, 10, 0.35); }
.tdPictureCell img[src^="ShowPicture"] { box-sizing: border-box; border: 7px solid #FFFFFF; box-shadow: 0 1px 4px rgba(60, 40, 10, 0.35); }
.tdPictureCell font, .tdPictureCell font a { font-style: italic; }

.lblFolder { font-size: 16px; }
.lblFolderSelected { background: var(--select); color: var(--select-ink); }
.lblPictureView, .lblPictureNav { font-size: 14px; font-style: italic; color: var(--soft); }
.lblPopularDirs, .lblPopularMedia { font-size: 19px; color: var(--ink); }
.lblPopularSubDir { font-size: 15px; }

.tdTopText { background: #4A3526 !important; color: #F6EBD6; font: italic 16px/1 Georgia, "DejaVu Serif", serif; white-space: nowrap; padding-left: 12px; }
.tdTopText a { float: right; margin-right: 6px; color: #F6EBD6; }
.tdBottomText { border-top: 1px solid var(--line); background: var(--side); color: var(--soft); font: italic 13px/1.2 Georgia, "DejaVu Serif", serif; white-space: nowrap; }
.tdBottomText b { font-weight: normal; }
.tdBottomText img { vertical-align: middle; }
.tdBottomText:first-child { width: 100%; max-width: 0; overflow: hidden; text-overflow: ellipsis; }
@media (max-width: 420px) { .tdBottomText { font-size: 11px; } }

.tblTableHeader { background: var(--line); }
.tdTableTitle { padding: 7px 10px; font-style: italic; font-size: 17px; }
.tdTableContents { background: var(--page); }
.tdTableRow { padding: 4px 6px; font-size: 14px; border-bottom: 1px solid var(--tint); }
