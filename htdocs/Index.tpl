<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="referrer" content="same-origin">
<title>{SERVER_TITLE}</title>
<link rel="icon" href="favicon.ico">
<style>
body { margin: 0; }
a:focus-visible { outline: 2px solid var(--link, #1F57B5); outline-offset: 2px; }
img { border: 0; }
.masthead { padding: 26px 24px 22px; }
.masthead h1 { margin: 0; overflow-wrap: anywhere; }
.masthead p { margin: 4px 0 0; }
.by:not(:empty)::before { content: "by "; }
.inside { max-width: 1080px; margin: 0 auto; }
.columns { display: grid; grid-template-columns: minmax(0, 1fr) 250px; gap: 32px; padding: 24px; }
.welcome { margin: 0 0 22px; overflow-wrap: anywhere; }
.welcome:empty { display: none; }
.albums { width: 100%; border-collapse: collapse; }
.albums > tbody > tr > td { padding: 14px 8px; }
.albums > tbody > tr > td:first-child { width: 40px; }
.albums > tbody > tr > td:nth-child(3) { width: 1%; }
.albums > tbody > tr[onclick] { cursor: pointer; }
.albums > tbody > tr > td[colspan="2"] { padding: 0; }
.albums > tbody > tr > td[colspan="2"] + td { padding: 0 8px 10px; }
.albums > tbody > tr > td[colspan="3"]:not([class]) { padding: 0; height: 12px; border-bottom: 1px solid var(--line, #D5DBE5); }
.albums > tbody > tr > td[colspan="3"]:not([class]) br { display: none; }
.albums > tbody > tr:last-child > td[colspan="3"]:not([class]) { border: 0; }
.albums > tbody > tr:has(+ tr > td[colspan="2"]) > td:nth-child(3) { vertical-align: bottom; padding-bottom: 6px; }
.albums td.tdAlbumList { overflow-wrap: anywhere; }
.albums td.tdPictureCell img { height: auto; vertical-align: middle; }
.albums td.tdPictureCell:empty { visibility: hidden; }
.panel { margin: 0 0 22px; padding: 14px 16px; border: 1px solid var(--line, #D5DBE5); border-radius: 8px; background: var(--side, #F5F7FA); }
.panel h2 { margin: 0 0 8px; }
.panel ul { list-style: none; margin: 0; padding: 0; }
.panel li { padding: 3px 0; }
.panel li img { vertical-align: -3px; margin-right: 7px; }
.figures { width: 100%; border-collapse: collapse; font-variant-numeric: tabular-nums; }
.figures th, .figures td { padding: 3px 0 3px 8px; text-align: right; font-weight: normal; }
.figures th:first-child { padding-left: 0; text-align: left; }
.footer { padding: 16px 24px 28px; text-align: center; border-top: 1px solid var(--line, #D5DBE5); }
.footer p { margin: 4px 0; }
@media (max-width: 760px) {
  .columns { grid-template-columns: minmax(0, 1fr); gap: 20px; padding: 16px; }
  .masthead { padding: 18px 16px 16px; }
}
@media (max-width: 560px) {
  .albums, .albums > tbody { display: block; }
  .albums > tbody > tr { display: grid; grid-template-columns: 44px minmax(0, 1fr); }
  .albums > tbody > tr > td, .albums > tbody > tr > td:first-child, .albums > tbody > tr > td:nth-child(3) { width: auto; padding: 10px 4px; }
  .albums > tbody > tr > td:nth-child(3), .albums > tbody > tr > td[colspan="3"], .albums > tbody > tr > td[colspan="2"] + td { grid-column: 1 / -1; text-align: center; }
  .albums > tbody > tr > td.lblPictureList { text-align: left; }
  .albums td.tdPictureCell img { max-width: 100%; }
  .albums > tbody > tr > td[colspan="2"], .albums > tbody > tr > td:has(td.tdPictureCell:empty) { display: none; }
}
</style>
<style>
{STYLE_SHEET}
</style>
<script language="javascript">
sBrowser = "IE"; sBrowserVer = 6;
function mMouseOver(tdID) {
   if(sBrowser == "IE" && sBrowserVer >= 5.5) {
       var tdbox = document.all(tdID);
       if (tdbox != null) tdbox.style.border = "solid #2254B1 1px"
   }
}

function mMouseOut(tdID) {
   if(sBrowser == "IE" && sBrowserVer >= 5.5) {
       var tdbox = document.all(tdID);
       if (tdbox != null) tdbox.style.border = "solid white 1px"
   }
}
</script>
<script>
var siteAddress = '{SERVER_URL}', siteTitle = '{SERVER_TITLE_SLASH}', siteAuthor = '{AUTHOR_SLASH}';

function SendSite() {
  location.href = 'mailto:?subject=' + encodeURIComponent(siteTitle) +
    '&body=' + encodeURIComponent(siteTitle + (siteAuthor ? ' (' + siteAuthor + ')' : '') + ': ' + siteAddress);
}

// A link inside an album's row goes where it says; only the rest of the row opens the album.
function KeepLinks() {
  Array.prototype.forEach.call(document.querySelectorAll('.albums a'), function (link) {
    link.addEventListener('click', function (event) { event.stopPropagation(); });
  });
}
// A featured picture has no caption; it stands for its album.
function DescribePictures() {
  Array.prototype.forEach.call(document.querySelectorAll('.albums td.tdPictureCell a > img'), function (image) {
    var name = image.closest('table').closest('tr').querySelector('.lblAlbumName');
    if (name) image.alt = name.textContent;
  });
}
document.addEventListener('DOMContentLoaded', KeepLinks);
document.addEventListener('DOMContentLoaded', DescribePictures);
// The home page of a build that has none is one of the addresses that nobody can own (RFC 2606): its link is plain text.
function PlainFooter() {
  Array.prototype.forEach.call(document.querySelectorAll('a[href]'), function (link) {
    if (/\.example$/.test(link.hostname)) link.replaceWith.apply(link, link.childNodes);
  });
}
document.addEventListener('DOMContentLoaded', PlainFooter);
</script>
</head>
<body>
<div class="masthead">
  <div class="inside">
    <h1>{SERVER_TITLE}</h1>
    <p class="by">{AUTHOR}</p>
  </div>
</div>
<div class="columns inside">
  <div>
    <div class="welcome">{WELCOME}</div>
    <table class="albums" border="0" cellpadding="0" cellspacing="0">
{SHARE_LIST}
    </table>
  </div>
  <div>
    <div class="panel">
      <h2>Find your way</h2>
      <ul>
        <li><a href="ShowAlbum?ShowPopular&amp;thumbs"><img src="ShowGraphic?popular16.gif" alt="">Most popular</a></li>
        <li><a href="ShowAlbum?ShowStats"><img src="ShowGraphic?stats16.gif" alt="">Statistics</a></li>
        <li><a href="ShowAlbum?ShowHelp"><img src="ShowGraphic?help16.gif" alt="">Help</a></li>
        <li><a href="ShowAlbum?ShowLogin&amp;1&amp;thumbs&amp;1"><img src="ShowGraphic?login16.gif" alt="">Log in</a></li>
        <li><a href="javascript:SendSite();"><img src="ShowGraphic?digitalcam16.gif" alt="">Tell a friend</a></li>
      </ul>
    </div>
    <div class="panel">
      <h2>This site so far</h2>
      <table class="figures lblPictureList">
        <tr><th></th><td>Session</td><td>Total</td></tr>
        <tr><th>Online</th><td>{SESSION_RUNTIME}</td><td>{TOTAL_RUNTIME}</td></tr>
        <tr><th>Visitors</th><td>{SESSION_CONNECTIONS}</td><td>{TOTAL_CONNECTIONS}</td></tr>
        <tr><th>Pictures</th><td>{SESSION_THUMBS}</td><td>{TOTAL_THUMBS}</td></tr>
        <tr><th>File clicks</th><td>{SESSION_DOWNLOADS}</td><td>{TOTAL_DOWNLOADS}</td></tr>
        <tr><th>Sent</th><td>{SESSION_BANDWIDTH}</td><td>{TOTAL_BANDWIDTH}</td></tr>
        <tr><th>Here now</th><td>{ACTIVE}</td><td></td></tr>
      </table>
    </div>
  </div>
</div>
<div class="footer">
  <p><font class="lblPictureList">{FOOTER}</p>
  <p class="lblPictureList">Pixmora! Digital Media Software {VERSION}</p>
</div>
</body>
</html>
