<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="referrer" content="same-origin">
<title>Statistics - {SERVER_TITLE}</title>
<style>
body { margin: 0; }
.heading { padding: 14px 20px 10px; border-bottom: 1px solid var(--line, #D5DBE5); }
.heading h1 { margin: 0; }
.statistics { padding: 20px 20px 8px; }
.statistics > br { display: none; }
.tblTableHeader { width: 100%; max-width: 860px; margin: 0 auto 22px; }
.tblTableHeader table { border-collapse: collapse; font-variant-numeric: tabular-nums; }
tr[onclick] { cursor: pointer; }
tr.over > td { background: var(--tint, var(--row-over)) !important; }
tr.marked > td { background: var(--marked, var(--row-mark)) !important; }
.about { padding: 0 20px 22px; text-align: center; }
.about p { margin: 4px 0; }
.framed #home { display: none; }
@media (max-width: 640px) {
  .statistics { padding: 10px 6px; }
  .tblTableHeader td.tdTableRow { padding-left: 2px; padding-right: 2px; font-size: 11px; }
  .tblTableHeader td.tdTableRow:first-child { white-space: nowrap; }
}
</style>
<style>
{STYLE_SHEET}
</style>
<script>
// The row under the pointer lights up, and a click marks a row until it is clicked again. The colours come along as the
// rows give them; a style sheet that has its own takes them instead.
function setPointer(row, index, action, defaultColour, overColour, markColour) {
  row.style.setProperty('--row-over', overColour);
  row.style.setProperty('--row-mark', markColour);
  if (action == 'click') row.classList.toggle('marked');
  else row.classList.toggle('over', action == 'over');
}
// Inside the album frames the tree leads back.
function NoteFrames() { if (parent != self) document.body.classList.add('framed'); }
document.addEventListener('DOMContentLoaded', NoteFrames);
</script>
</head>
<body>
<div class="heading"><h1>Statistics</h1></div>
<div class="statistics">
{STATS_SUMMARY}
{STATS_HOURLY}
{STATS_DAILY}
{STATS_MONTHLY}
</div>
<div class="about lblPictureList">
  <p>{SERVER_TITLE} {AUTHOR}</p>
  <p><a id="home" href="Index" target="_top">Front page</a></p>
</div>
</body>
</html>
