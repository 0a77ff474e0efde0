/* Garden: leaf green, round corners and plenty of light. */
:root {
  color-scheme: light;
  --desk: #CFE3C8; --page: #F7FBF4; --side: #EAF5E4; --tint: #DFF0D6; --line: #C4DDB8;
  --ink: #21351F; --soft: #56704F; --link: #1B7A3D; --glow: #F08A3C;
  --select: #2E8B4B; --select-ink: #FFFFFF; --marked: #FCE3C8;
}
body { margin: 0; background: var(--page); color: var(--ink); font: 15px/1.5 "Trebuchet MS", "Nunito", "Segoe UI", "DejaVu Sans", sans-serif; }
table { color: inherit; font-size: inherit; }
a { color: var(--link); text-decoration: none; }
a:hover { color: #B85A10; }
h1 { font-size: 23px; font-weight: bold; }
h2 { font-size: 16px; font-weight: bold; color: var(--link); }
img[src$="disabled.gif"] { opacity: 0.4; }

.masthead { background: linear-gradient(100deg, #2E8B4B, #7CB342 60%, #D5C14B); color: #FFFFFF; }
.masthead h1 { font-size: 32px; text-shadow: 0 1px 3px rgba(20, 60, 20, 0.45); }
.masthead p { color: #FFFFFF; text-shadow: 0 1px 3px rgba(20, 60, 20, 0.6); }
.panel { border-radius: 16px !important; }

.lblAlbumName { font-size: 20px; font-weight: bold; }
.lblPictureList { font-size: 13px; line-height: 1.5; color: var(--soft); }
.lblPictureList a { color: var(--link); }
a .lblPictureList { color: inherit; }
.tdAlbumList { color: var(--soft); }
tr[onclick]:hover > td { background: var(--side); }
tr[onclick] > td:first-child { border-radius: 16px 0 0 16px; }
tr[onclick] > td:nth-child(3) { border-radius: 0 16px 16px 0; }

td.tdPictureCell, div.tdPictureCell { border-radius: 16px; }
td.tdPictureCell[id], div.tdPictureCell { background: #FFFFFF; }
td.tdPictureCell[id] { border: 2px solid transparent !important; box-shadow: 0 1px 5px rgba(40, 90, 40, 0.18); }
td.tdPictureCell[id]:hover { border-color: var(--glow) !important; }
.tdPictureCell img[src^="ShowPicture"] { border-radius: 10px; }

.lblFolder { font-size: 15px; }
.lblFolderSelected { border-radius: 10px; background: var(--select); color: var(--select-ink); }
.lblPictureView, .lblPictureNav { font-size: 13px; color: var(--soft); }
.lblPopularDirs, .lblPopularMedia { font-size: 17px; font-weight: bold; color: var(--link); }
.lblPopularSubDir { font-size: 14px; }

.tdTopText { background: linear-gradient(100deg, #2E8B4B, #7CB342) !important; color: #FFFFFF; font: bold 15px/1 "Trebuchet MS", "Segoe UI", "DejaVu Sans", sans-serif; white-space: nowrap; padding-left: 12px; }
.tdTopText a { float: right; margin-right: 6px; color: #FFFFFF; }
.tdBottomText { border-top: 1px solid var(--line); background: var(--side); color: var(--soft); font: 12px/1.3 "Trebuchet MS", "Segoe UI", "DejaVu Sans", sans-serif; white-space: nowrap; }
.tdBottomText b { font-weight: normal; }
.tdBottomText img { vertical-align: middle; }
.tdBottomText:first-child { width: 100%; max-width: 0; overflow: hidden; text-overflow: ellipsis; }
@media (max-width: 420px) { .tdBottomText { font-size: 11px; } }

.tblTableHeader { background: var(--line); border-radius: 16px; }
.tdTableTitle { padding: 8px 14px; font-weight: bold; color: var(--link); }
.tdTableContents { background: #FFFFFF; border-radius: 12px; }
.tdTableRow { padding: 4px 6px; font-size: 13px; border-bottom: 1px solid var(--tint); }
