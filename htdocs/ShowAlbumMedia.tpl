<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="referrer" content="same-origin">
<title>{DIR_TITLE} - {SERVER_TITLE}</title>
<style>
body { margin: 0; }
a:focus-visible { outline: 2px solid var(--link, #1F57B5); outline-offset: 2px; }
img { border: 0; }
.heading { display: flex; flex-wrap: wrap; align-items: center; justify-content: space-between; gap: 6px 16px; padding: 14px 20px 10px; }
.heading h1 { margin: 0; overflow-wrap: anywhere; }
.view { white-space: nowrap; }
.view img, .toolbar img { margin: 0 2px; vertical-align: middle; }
.toolbar { display: flex; flex-wrap: wrap; align-items: center; justify-content: center; gap: 4px 14px; padding: 6px 20px;
  position: sticky; top: 0; z-index: 1; background: var(--page, #FFFFFF);
  border-top: 1px solid var(--line, #D5DBE5); border-bottom: 1px solid var(--line, #D5DBE5); }
.toolbar br { display: none; }
.toolbar:not(:has(font, img)) { display: none; }
.pictures { padding: 12px 20px 24px; }
.pictures > table { margin: 0 auto; border-spacing: 12px; }
td[valign="top"]:not([class]) { height: 1px; padding: 0; }
td[valign="top"]:not([class]) > table { height: 100%; }
td.tdPictureCell[id] { vertical-align: middle; padding: 8px; }
/* A long name breaks at the picture's width. */
td.tdPictureCell[id] > font { display: block; width: min-content; min-width: 112px; margin: 0 auto; overflow-wrap: anywhere; }
td.tdPictureCell[id] img { height: auto; margin-bottom: 4px; }
td.tdPictureCell img[src^="ShowPicture"][width] { aspect-ratio: auto 4 / 3; background: var(--tint, #F3F6FB); }
.about { padding: 0 20px 20px; text-align: center; }
.about span:empty { display: none; }
.about .by::before { content: "Pictures and movies by "; }
/* Thumbnails wrap where the window is too narrow for the owner's number of files in a row. */
.wrapped table.thumbs { display: flex; flex-wrap: wrap; justify-content: center; gap: 12px; }
.wrapped table.thumbs > tbody, .wrapped table.thumbs > tbody > tr { display: contents; }
.wrapped table.thumbs > tbody > tr > td { display: block; max-width: 100%; height: auto; box-sizing: border-box; }
.wrapped table.thumbs > tbody > tr > td[colspan] { flex-basis: 100%; }
@media (max-width: 640px) {
  .heading { padding: 10px 12px 8px; }
  .toolbar { padding: 8px 12px; }
  .pictures { padding: 8px 8px 20px; }
  .pictures > table { border-spacing: 4px; max-width: 100%; }
  .wrapped table.thumbs > tbody > tr > td:not([colspan]) { flex: 0 0 calc(50% - 6px); }
  .wrapped td.tdPictureCell[id] > font { width: auto; min-width: 0; }
  .wrapped td.tdPictureCell[id] img { max-width: 100%; }
  .pictures > table:not(.thumbs) td.tdPictureCell[id] > font { width: auto; }
  .pictures > table:not(.thumbs) img { max-width: 100%; }
  td.tdPictureCell { overflow-wrap: anywhere; }
  td.tdPictureCell ~ td { width: auto; padding: 2px; text-align: right; white-space: nowrap; }
  .toolbar img { min-width: 30px; height: auto; }
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
function Wrap() {
  var table = document.querySelector('.pictures > table');
  if (!table || !table.querySelector('td > table td.tdPictureCell')) return;
  table.classList.add('thumbs');
  document.body.classList.remove('wrapped');
  if (document.documentElement.scrollWidth > document.documentElement.clientWidth) document.body.classList.add('wrapped');
}
// Follows the first link of the toolbar that has one of these signs.
function Follow(words) {
  var image = words.map(function (word) { return document.querySelector('.toolbar a > img[alt="' + word + '"]'); }).find(Boolean);
  if (image) image.parentNode.click();
  return Boolean(image);
}
// The arrow keys do what the arrows on the page do; the space bar stops the slide show and lets it go on.
function Key(event) {
  var words = { ArrowLeft: ['Back', 'Previous'], ArrowRight: ['Forward', 'Next'], ' ': ['Pause', 'Play'] }[event.key];
  if (!words || event.altKey || event.ctrlKey || event.metaKey) return;
  if (Follow(words) && event.key == ' ') event.preventDefault();
}
// A swipe leads on like the arrows, unless the fingers zoom or move a zoomed page.
var touch = null;
function TouchStart(event) { touch = event.touches.length == 1 ? event.touches[0] : null; }
function TouchEnd(event) {
  if (!touch || (window.visualViewport && visualViewport.scale > 1)) return;
  var x = event.changedTouches[0].clientX - touch.clientX, y = event.changedTouches[0].clientY - touch.clientY;
  if (Math.abs(x) > 50 && Math.abs(x) > 2 * Math.abs(y)) Follow([x < 0 ? 'Forward' : 'Back']);
}
// A name as the address has it: the tokens of characters that links can't carry turned back.
function PlainName(part) {
  try { part = decodeURIComponent(part); } catch (e) {}
  return part.replace(/<(amp|plus|pound|percent)>(?:and|num)<\1>|<byte>([0-9A-F]{2})<byte>/g, function (token, kind, code) {
    return code ? String.fromCharCode(parseInt(code, 16)) : { amp: '&', plus: '+', pound: '#', percent: '%' }[kind];
  });
}
// The pieces of this page's own address. Mailed addresses have "*" for "&" and "**" for a blank.
function AddressParts() {
  return location.search.substr(1).replace(/&$/, '').replace(/\*\*/g, '%20').replace(/\*/g, '&').split('&');
}
// The way down to this place, each step a link. The album's name stands in the tree, from where the frameset tells it.
function ShowWay(album, view, directories, here) {
  var way = document.getElementById('way'), title = way.textContent;
  way.textContent = '';
  [''].concat(directories).forEach(function (directory, i) {
    var link = document.createElement('a');
    link.href = i == directories.length && here ? here : 'ShowAlbum?' + [album].concat(view, directories.slice(0, i)).join('&');
    link.target = '_top';
    link.textContent = i == directories.length ? title : i == 0 ? 'Album' : PlainName(directory);
    if (i == 0 && directories.length > 0) link.id = 'album';
    way.append(i == 0 ? '' : ' > ', link);
  });
}
function AlbumNumber() { return AddressParts()[0]; }
function NameAlbum(name) {
  var link = document.getElementById('album');
  if (link) link.textContent = name;
}
// The details page leads back to here.
function Remember(address) { try { sessionStorage.setItem('came', address); } catch (e) {} }
function ShowPlace() {
  var parts = AddressParts(), isShow = parts[1] == 'slideshow';
  ShowWay(parts[0], isShow ? [parts[1], 1, 'play', 0, 5] : [parts[1], 1], parts.slice(isShow ? 6 : 3));
  Remember('ShowAlbum?' + parts.join('&'));
}
// What a picture's caption says stands for the picture where it isn't seen.
function DescribePictures() {
  Array.prototype.forEach.call(document.querySelectorAll('a > img[src^="ShowPicture"], a > img[src$="movie.gif"]'), function (image) {
    image.alt = image.parentNode.textContent.trim();
  });
}
// A show goes on after a picture that can't be shown, when its time has come.
function GoOn(event) { if (event.target.onload && window.NextPic) event.target.onload(); }
document.addEventListener('error', GoOn, true);
document.addEventListener('DOMContentLoaded', ShowPlace);
document.addEventListener('DOMContentLoaded', DescribePictures);
document.addEventListener('DOMContentLoaded', Wrap);
window.addEventListener('resize', Wrap);
document.addEventListener('keydown', Key);
document.addEventListener('touchstart', TouchStart);
document.addEventListener('touchend', TouchEnd);
</script>
</head>
<body>
<div class="heading">
  <h1 id="way">{DIR_TITLE}</h1>
  <div class="view">{PIC_VIEW}</div>
</div>
<div class="toolbar">
  <div>{PIC_NAV_LEFT}</div>
  <div>{PIC_PAGE}</div>
  <div>{PIC_NAV_RIGHT}</div>
</div>
<div class="pictures">
{PIC_LIST}
</div>
<div class="about lblPictureList"><span class="by">{AUTHOR}</span> <span>{LOGIN_NAME}</span></div>
</body>
</html>
