<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="referrer" content="same-origin">
<title>{SERVER_TITLE}</title>
<style>
frame.plain { visibility: hidden; }
</style>
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

// Margins and borders come without a response head: browsers refuse that, or show the markup. An empty page takes their
// place before they come, and they stay hidden until it is painted.
function ShowPlain(frame) {
  if (Paint(frame)) frame.style.visibility = 'visible';
  else Empty(frame);
}

function Empty(frame) { frame.contentWindow.location.replace('about:blank'); }

function Paint(frame) {
  var page = PageIn(frame);
  if (!page || page.URL != 'about:blank') return false;
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

// A failure comes without a response head, too, and no browser shows that well: a sentence takes its place.
function Explain(frame) {
  var page = PageIn(frame);
  if (!page || page.contentType == 'text/plain') {
    Empty(frame);
  } else if (page.URL == 'about:blank') {
    Dress(page);
    page.body.style.cssText = 'margin: 20px; background: var(--page, #FFFFFF); color: var(--ink, #1F2A3A); font: 15px/1.45 system-ui, sans-serif';
    page.body.textContent = 'Sorry, there is nothing to see at this address. ';
    var link = page.createElement('a');
    link.href = new URL('Index', location.href).href;
    link.target = '_top';
    link.textContent = 'Front page';
    link.style.color = 'var(--link, #1F57B5)';
    page.body.appendChild(link);
  }
}

// The address of the tree, with the token of "%" for each "%": as an escape it would be gone when the server compares the
// directory's name with those on the disk. A "%" of the name's own goes as a byte then.
function TreeAddress(address) {
  return address.replace(/<percent>num<percent>(?=20)/g, '<byte>25<byte>').replace(/%/g, '<percent>num<percent>');
}

// The pages beside the tree tell the way down to their place, and the tree knows the album's name.
function NameAlbum() {
  var tree = PageIn(Element('tree')), media = PageIn(Element('media')), page = media && media.defaultView;
  var name = tree && page && page.NameAlbum && tree.querySelector('a[href^="ShowAlbum?' + Number(page.AlbumNumber()) + '&"] b');
  if (name) page.NameAlbum(name.textContent.trim());
}

// The bars are the program's own pages, so they are finished here.
function FinishBar(page) {
  var meta = page.createElement('meta');
  meta.name = 'referrer';
  meta.content = 'same-origin';
  page.head.appendChild(meta);
  // The home page of a build that has none is one of the addresses that nobody can own (RFC 2606).
  Array.prototype.forEach.call(page.querySelectorAll('a[href]'), function (link) {
    if (/\.example$/.test(link.hostname)) link.replaceWith.apply(link, link.childNodes);
  });
}

function FrameLoaded(event) {
  var frame = event.target;
  if (frame.tagName != 'FRAME') return;
  var page = PageIn(frame);
  if (frame.className == 'plain') ShowPlain(frame);
  if (frame.id == 'titlebar') { ReadLook(); PaintAll(); OfferTree(); }
  if (frame.id == 'titlebar' || frame.id == 'bottombar') { if (page) FinishBar(page); }
  if (frame.id == 'tree' || frame.id == 'media') { Explain(frame); NameAlbum(); }
  if (frame.id == 'media') {
    if (page && page.title) document.title = page.title;
    if (treeOpen) { treeOpen = false; Arrange(); }
  }
}

// Called as soon as the frames stand in this page, before any answer has come.
function FramesMade(records) {
  records.forEach(function (record) { Array.prototype.forEach.call(record.addedNodes, FrameMade); });
}

function FrameMade(frame) {
  if (frame.tagName != 'FRAME') return;
  if (frame.className == 'plain') Empty(frame);
  var address = frame.id == 'tree' && TreeAddress(frame.getAttribute('src'));
  if (address && address != frame.getAttribute('src')) frame.contentWindow.location.replace(address);
}

Measure();
document.addEventListener('load', FrameLoaded, true);
new MutationObserver(FramesMade).observe(document, { childList: true, subtree: true });
document.addEventListener('DOMContentLoaded', Arrange);
window.addEventListener('load', function () {
  ReadLook();
  PaintAll();
  Arrange();
  // Some browsers tell of a refused answer with no event of the frame's own.
  Explain(Element('tree'));
  Explain(Element('media'));
});
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
