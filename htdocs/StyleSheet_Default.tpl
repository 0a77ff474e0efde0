/* Default: clear blue on white, and the same in the dark for visitors whose system asks for it. */
:root {
  color-scheme: light dark;
  --desk: #DDE3EC; --page: #FFFFFF; --side: #F5F7FA; --tint: #EEF3FB; --line: #D5DBE5;
  --ink: #1F2A3A; --soft: #56647A; --link: #1F57B5; --glow: #2254B1;
  --select: #2B6CD4; --select-ink: #FFFFFF; --marked: #D6E4FB;
}
@media (prefers-color-scheme: dark) {
  :root {
    --desk: #0E1218; --page: #171C24; --side: #1D232D; --tint: #232B37; --line: #333D4C;
    --ink: #E2E7EF; --soft: #9DA9BA; --link: #8DB6F5; --glow: #6EA1F0;
    --select: #2B6CD4; --select-ink: #FFFFFF; --marked: #2C4368;
  }
}
body { margin: 0; background: var(--page); color: var(--ink); font: 15px/1.45 system-ui, "Segoe UI", Roboto, "Helvetica Neue", Arial, sans-serif; }
table { color: inherit; font-size: inherit; }
a { color: var(--link); text-decoration: none; }
a:hover { text-decoration: underline; }
h1 { font-size: 21px; font-weight: 600; letter-spacing: -0.01em; }
h2 { font-size: 15px; font-weight: 600; }
img[src$="disabled.gif"] { opacity: 0.45; }

.masthead { background: linear-gradient(#2F66BE, #1C4690); border-bottom: 3px solid #F59E0B; color: #FFFFFF; }
.masthead h1 { font-size: 30px; }
.masthead p { color: #D3E2FA; }

.lblAlbumName { font-size: 19px; font-weight: 600; }
.lblPictureList { font-size: 13px; line-height: 1.45; color: var(--soft); }
.lblPictureList a { color: var(--link); }
a .lblPictureList { color: inherit; }
.tdAlbumList { color: var(--soft); }
tr[onclick]:hover > td { background: var(--tint); }

td.tdPictureCell, div.tdPictureCell { border-radius: 6px; }
td.tdPictureCell[id] { border: 1px solid transparent !important; }
td.tdPictureCell[id]:hover { border-color: var(--glow) !important; background: var(--tint); }
.tdPictureCell img[src^="ShowPicture"] { border-radius: 3px; }

.lblFolder { font-size: 15px; }
.lblFolderSelected { border-radius: 4px; background: var(--select); color: var(--select-ink); }
.lblPictureView, .lblPictureNav { font-size: 13px; color: var(--soft); }
.lblPopularDirs, .lblPopularMedia { font-size: 16px; font-weight: 600; color: var(--ink); }
.lblPopularSubDir { font-size: 14px; }

.tdTopText { color: #FFFFFF; font: 600 15px/1 system-ui, "Segoe UI", Roboto, "Helvetica Neue", Arial, sans-serif; white-space: nowrap; padding-left: 10px; }
.tdTopText a { float: right; margin-right: 6px; color: #FFFFFF; font-weight: 600; }
.tdBottomText { border-top: 1px solid var(--line); background: var(--side); color: var(--soft); font: 12px/1.3 system-ui, "Segoe UI", Roboto, "Helvetica Neue", Arial, sans-serif; white-space: nowrap; }
.tdBottomText b { font-weight: normal; }
.tdBottomText img { vertical-align: middle; }
.tdBottomText:first-child { width: 100%; max-width: 0; overflow: hidden; text-overflow: ellipsis; }
@media (max-width: 420px) { .tdBottomText { font-size: 11px; } }

.tblTableHeader { background: var(--line); border-radius: 8px; }
.tdTableTitle { padding: 7px 10px; font-weight: 600; color: var(--ink); }
.tdTableContents { background: var(--page); }
.tdTableRow { padding: 4px 6px; font-size: 13px; border-bottom: 1px solid var(--tint); }
