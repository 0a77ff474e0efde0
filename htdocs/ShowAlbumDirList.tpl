<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="referrer" content="same-origin">
<title>Albums and directories</title>
<base target="_top">
<style>
html { background: var(--side, #F5F7FA); }
body { margin: 0; padding: 10px 8px 16px; background: var(--side, #F5F7FA); color: var(--ink, #1F2A3A);
  font: 13px/20px system-ui, "Segoe UI", Roboto, "Helvetica Neue", Arial, sans-serif; }
a { color: inherit; text-decoration: none; }
a:hover { color: var(--link, #1F57B5); text-decoration: underline; }
a:focus-visible { outline: 2px solid var(--link, #1F57B5); outline-offset: 1px; border-radius: 3px; }
img { border: 0; vertical-align: middle; }
table { border-collapse: collapse; }
td.lblFolder { padding: 1px 6px 1px 0; }
/* The statistics line brings an indent of its own. */
td.lblFolder img[src$="blank16.gif"] + img[src$="blank16.gif"][align] { display: none; }
font.lblFolderSelected { padding: 1px 2px; border-radius: 4px; background: var(--select, #2B6CD4); color: var(--select-ink, #FFFFFF); }
.site { display: flex; justify-content: space-between; gap: 8px; margin: 0 4px 8px; padding-bottom: 8px;
  border-bottom: 1px solid var(--line, #D5DBE5); }
.site a { color: var(--link, #1F57B5); }
@media (min-width: 320px), (pointer: coarse) {
  body { font-size: 16px; }
  td.lblFolder { height: 34px; }
}
</style>
<script>
try { parent.Dress(document); } catch (e) {}

var siteAddress = '{SERVER_URL}', siteTitle = '{SERVER_TITLE_SLASH}', siteAuthor = '{AUTHOR_SLASH}';

function SendSite() {
  location.href = 'mailto:?subject=' + encodeURIComponent(siteTitle) +
    '&body=' + encodeURIComponent(siteTitle + (siteAuthor ? ' (' + siteAuthor + ')' : '') + ': ' + siteAddress);
}

function ShowCurrent() {
  document.getElementById('home').title = siteTitle + (siteAuthor ? ' - ' + siteAuthor : '');
  var mark = document.getElementsByName('curdir')[0];
  if (!mark) return;
  var row = mark.parentNode, box = row.getBoundingClientRect();
  if (box.top < 0 || box.bottom > window.innerHeight) window.scrollTo(0, window.scrollY + box.top - window.innerHeight / 3);
}
document.addEventListener('DOMContentLoaded', ShowCurrent);
</script>
</head>
<body>
<div class="site">
  <a id="home" href="Index">Front page</a>
  <a href="javascript:SendSite();" target="_self" title="Send this site's address to someone">Tell a friend</a>
</div>
<table border="0" cellpadding="0" cellspacing="0">
{DIR_LIST}
</table>
</body>
</html>
