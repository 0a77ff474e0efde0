<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>{SERVER_TITLE}</title>
<style>
frame.plain { visibility: hidden; }
</style>
<noscript><style>frame.plain { visibility: visible; }</style></noscript>
<script>
// The frames of an album. The bottom bar's own script gives the middle row myHeight - 200 and the middle column
// myWidth - 100 pixels once it has loaded, so both are kept at what this window needs.
var myWidth, myHeight, treeOpen = false;

// Colours that the style sheet sets and that the tree and the margins borrow from the title bar's page.
var LOOK = ['--desk', '--side', '--ink', '--soft', '--line', '--link', '--tint', '--select', '--select-ink'];
var look = {};
try { look = JSON.parse(sessionStorage.getItem('look')) || {}; } catch (e) {}

// A click in the big frame that forgot its target must not put frames into frames.
if (window.name == 'media' && parent != self) parent.location.replace(location.href);

function IsNarrow() { return window.innerWidth < 700; }

function Measure() {
  var side = IsNarrow() ? 0 : Math.max(20, Math.round((window.innerWidth - 1480) / 2));
  var edge = IsNarrow() ? 0 : 20;
  myWidth = window.innerWidth - 2 * side - 2 + 100;
  myHeight = window.innerHeight - 2 * edge + 200;
}

function Element(id) { return document.getElementById(id); }

function Arrange() {
  Measure();
  if (!Element('treeframe')) return;
  Element('bigframe').rows = '*,' + (myHeight - 200) + ',*';
  Element('midframe').cols = '*,1,' + (myWidth - 100) + ',1,*';
  Element('treeframe').cols = IsNarrow() ? (treeOpen ? '*,0,0' : '0,0,*') : '230,1,*';
  OfferTree();
}

// The page in a frame, or null where the browser shows its own page for an answer that it refused.
function PageIn(frame) {
  try { return frame.contentDocument && frame.contentDocument.body ? frame.contentDocument : null; } catch (e) { return null; }
}

function ReadLook() {
  var page = PageIn(Element('titlebar'));
  if (!page) return;
  var style = page.defaultView.getComputedStyle(page.documentElement);
  LOOK.forEach(function (name) { look[name] = style.getPropertyValue(name).trim(); });
  try { sessionStorage.setItem('look', JSON.stringify(look)); } catch (e) {}
}

// The tree's page calls this from its head, so that it never shows in other colours first.
function Dress(page) {
  LOOK.forEach(function (name) { if (look[name]) page.documentElement.style.setProperty(name, look[name]); });
}

// Margins and borders come without a response head, which browsers refuse on most ports: an empty page takes their place.
// They stay hidden until painted, so that the browser's own page about the refusal never flashes up.
function ShowPlain(frame) {
  if (Paint(frame)) frame.style.visibility = 'visible';
  else frame.contentWindow.location.replace('about:blank');
}

function Paint(frame) {
  var page = PageIn(frame);
  if (!page) return false;
  var given = /Border\?([0-9a-f]{6})/i.exec(frame.getAttribute('src'));
  var colour = given ? look['--line'] || '#' + given[1] : look['--desk'] || '#FFFFFF';
  page.documentElement.style.background = page.body.style.background = colour;
  return true;
}

function PaintAll() {
  if (look['--desk']) document.documentElement.style.background = look['--desk'];
  Array.prototype.forEach.call(document.querySelectorAll('frame.plain'), Paint);
  var tree = PageIn(Element('tree'));
  if (tree) Dress(tree);
}

// On a narrow window the tree is folded away, and a link in the title bar opens and closes it.
function OfferTree() {
  var page = PageIn(Element('titlebar'));
  var cell = page && page.querySelector('.tdTopText');
  if (!cell) return;
  var link = page.getElementById('treelink');
  if (!link) {
    link = page.createElement('a');
    link.id = 'treelink';
    link.href = '#';
    link.onclick = function () { treeOpen = !treeOpen; Arrange(); return false; };
    cell.insertBefore(link, cell.firstChild);
  }
  link.textContent = treeOpen ? '\u2715 Close' : '\u2630 Albums';
  link.style.display = IsNarrow() ? '' : 'none';
}

function FrameLoaded(event) {
  var frame = event.target;
  if (frame.tagName != 'FRAME') return;
  if (frame.className == 'plain') ShowPlain(frame);
  if (frame.id == 'titlebar') { ReadLook(); PaintAll(); OfferTree(); }
  if (frame.id == 'media') {
    var page = PageIn(frame);
    if (page && page.title) document.title = page.title;
    if (treeOpen) { treeOpen = false; Arrange(); }
  }
}

Measure();
document.addEventListener('load', FrameLoaded, true);
document.addEventListener('DOMContentLoaded', Arrange);
window.addEventListener('load', function () { ReadLook(); PaintAll(); Arrange(); });
window.addEventListener('resize', Arrange);
if (window.matchMedia) {
  var darkness = window.matchMedia('(prefers-color-scheme: dark)');
  if (darkness.addEventListener) darkness.addEventListener('change', function () { ReadLook(); PaintAll(); });
}
if (look['--desk']) document.documentElement.style.background = look['--desk'];
</script>
</head>
<frameset id="bigframe" name="bigframe" rows="20,*,20" border="0" frameborder="0" framespacing="0">
  <frame class="plain" src="Blank" title="Margin" frameborder="0" scrolling="no" noresize>
  <frameset id="midframe" name="midframe" cols="20,1,*,1,20" border="0" frameborder="0" framespacing="0">
    <frame class="plain" src="Blank" title="Margin" frameborder="0" scrolling="no" noresize>
    <frame class="plain" src="Border?C3CCDA" title="Border" frameborder="0" scrolling="no" noresize>
    <frameset rows="33,*,27" border="0" frameborder="0" framespacing="0">
      <frame id="titlebar" name="titlebar" src="ShowAlbumTop" title="Title" frameborder="0" marginwidth="0" marginheight="0" scrolling="no" noresize>
      <frameset id="treeframe" name="treeframe" cols="230,1,*" border="0" frameborder="0" framespacing="0">
        <frame id="tree" name="tree" src="ShowAlbumDirList?{DIR_ARGS}" title="Albums and directories" frameborder="0" scrolling="auto">
        <frame class="plain" src="Border?C3CCDA" title="Border" frameborder="0" scrolling="no" noresize>
        <frame id="media" name="media" src="{MEDIA_FRAME}{MEDIA_ARGS}" title="Pictures and movies" frameborder="0" scrolling="auto">
      </frameset>
      <frame id="bottombar" name="bottombar" src="ShowAlbumBottom" title="Links" frameborder="0" marginwidth="0" marginheight="0" scrolling="no" noresize>
    </frameset>
    <frame class="plain" src="Border?C3CCDA" title="Border" frameborder="0" scrolling="no" noresize>
    <frame class="plain" src="Blank" title="Margin" frameborder="0" scrolling="no" noresize>
  </frameset>
  <frame class="plain" src="Blank" title="Margin" frameborder="0" scrolling="no" noresize>
  <noframes>
    <body>
      <p>This site uses frames. Without them: <a href="{MEDIA_FRAME}{MEDIA_ARGS}">the pictures and movies</a>,
      <a href="ShowAlbumDirList?{DIR_ARGS}">the albums and directories</a>, <a href="Index">the front page</a>.</p>
    </body>
  </noframes>
</frameset>
</html>
