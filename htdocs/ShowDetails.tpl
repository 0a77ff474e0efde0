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
img { border: 0; max-width: 100%; height: auto; }
.heading { display: flex; flex-wrap: wrap; align-items: center; justify-content: space-between; gap: 6px 16px; padding: 14px 20px 10px;
  border-bottom: 1px solid var(--line, #D5DBE5); }
.heading h1 { margin: 0; overflow-wrap: anywhere; }
#back { padding: 0 6px; }
.arrows { white-space: nowrap; }
.arrows img { vertical-align: middle; margin-left: 6px; }
.file { display: flex; flex-wrap: wrap; justify-content: center; gap: 24px; padding: 22px 20px; }
.file .tdPictureCell { padding: 12px; text-align: center; min-width: 0; max-width: 100%; box-sizing: border-box; overflow-wrap: anywhere; }
.facts { flex: 0 1 330px; }
.facts .panel { margin: 0 0 16px; padding: 14px 10px; border: 1px solid var(--line, #D5DBE5); border-radius: 8px; background: var(--side, #F5F7FA); line-height: 1.6; }
.facts .camera:not(:empty) { margin-top: 12px; }
.file video { display: block; max-width: 100%; max-height: 75vh; margin: 0 auto 12px; background: #000; }
.about { padding: 4px 20px 22px; text-align: center; }
.about p { margin: 4px 0; }
.about span:empty { display: none; }
.about .by::before { content: "Pictures and movies by "; }
@media (max-width: 640px) {
  .heading { padding: 10px 12px 8px; }
  .file { padding: 12px; gap: 14px; }
  .facts { flex-basis: 100%; }
  .arrows img { width: 32px; }
}
</style>
<style>
{STYLE_SHEET}
</style>
<script>
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
// This page's own address holds album, count word and path.
function NameThings() {
  var parts = AddressParts(), path = (parts[2] || '').split('/'), name = PlainName(path.pop());
  document.title = name + ' - ' + document.title;
  Array.prototype.forEach.call(document.querySelectorAll('#download, a[href^="ShowMovie"]'), function (link) {
    link.setAttribute('download', name);
  });
  LeadBack(parts[0], path.slice(1));
}
// Back to the page and view of the listing that one came from, or to the directory's first page.
function LeadBack(album, directories) {
  var came = null, view = ['thumbs', 1];
  try { came = sessionStorage.getItem('came'); } catch (e) {}
  var parts = (came || '').substr('ShowAlbum?'.length).split('&'), start = parts[1] == 'slideshow' ? 6 : 3;
  var isHere = [album].concat(directories).map(PlainName).join('/') == parts.slice(0, 1).concat(parts.slice(start)).map(PlainName).join('/');
  if (isHere) view = start == 6 ? ['slideshow', 1, 'play', 0, 5] : [parts[1], 1];
  ShowWay(album, view, directories, isHere && came);
  var back = document.getElementById('back');
  back.href = isHere || /ShowPopular/.test(came) ? came : 'ShowAlbum?' + [album].concat(view, directories).join('&');
  back.hidden = false;
}
// What a picture's caption says stands for the picture where it isn't seen.
function DescribePictures() {
  Array.prototype.forEach.call(document.querySelectorAll('a > img[src^="ShowPicture"], a > img[src$="movie.gif"]'), function (image) {
    image.alt = image.parentNode.textContent.trim();
  });
}
// A movie that browsers know plays in the page, from its first frame on. One that this browser can't play keeps its icon.
function ShowMovie() {
  var cell = document.getElementById('file'), link = cell.querySelector('a'), icon = cell.querySelector('img');
  if (!cell.dataset.movie || !link || !icon) return;
  var video = document.createElement('video');
  video.controls = video.playsInline = true;
  video.preload = 'metadata';
  video.onerror = function () { video.replaceWith(); icon.hidden = false; };
  video.onloadedmetadata = function () { icon.hidden = !!video.videoWidth; };
  video.src = link.href + '#t=0.001';
  cell.insertBefore(video, link);
}
// The arrow keys do what the arrows on the page do.
function Follow(arrow) {
  var image = document.querySelector('.arrows a > img[src$="' + arrow + '"]');
  if (image) image.parentNode.click();
}
function Key(event) {
  var arrow = { ArrowLeft: 'previous.gif', ArrowRight: 'next.gif' }[event.key];
  if (arrow && event.target.tagName != 'VIDEO' && !event.altKey && !event.ctrlKey && !event.metaKey) Follow(arrow);
}
// A swipe leads on like the arrows, unless the fingers zoom, move a zoomed page or work a movie's controls.
var touch = null;
function TouchStart(event) { touch = event.touches.length == 1 && event.target.tagName != 'VIDEO' ? event.touches[0] : null; }
function TouchEnd(event) {
  if (!touch || (window.visualViewport && visualViewport.scale > 1)) return;
  var x = event.changedTouches[0].clientX - touch.clientX, y = event.changedTouches[0].clientY - touch.clientY;
  if (Math.abs(x) > 50 && Math.abs(x) > 2 * Math.abs(y)) Follow(x < 0 ? 'next.gif' : 'previous.gif');
}
// The home page of a build that has none is one of the addresses that nobody can own (RFC 2606): its link is plain text.
function PlainFooter() {
  Array.prototype.forEach.call(document.querySelectorAll('a[href]'), function (link) {
    if (/\.example$/.test(link.hostname)) link.replaceWith.apply(link, link.childNodes);
  });
}
document.addEventListener('DOMContentLoaded', PlainFooter);
document.addEventListener('DOMContentLoaded', NameThings);
document.addEventListener('DOMContentLoaded', DescribePictures);
document.addEventListener('DOMContentLoaded', ShowMovie);
document.addEventListener('keydown', Key);
document.addEventListener('touchstart', TouchStart);
document.addEventListener('touchend', TouchEnd);
</script>
</head>
<body>
<div class="heading">
  <h1><a id="back" target="_top" title="Back" hidden>&lsaquo;</a> <span id="way">{DIR_TITLE}</span></h1>
  <div class="arrows">{PREVIOUS_FILE}{NEXT_FILE}</div>
</div>
<div class="file">
  <div class="tdPictureCell" id="file" data-movie="{MOVIE_TYPE}">{FILE_REPRESENTATION}</div>
  <div class="facts">
    <div class="panel lblPictureList">
{DETAILS}
      <div class="camera">{CAMERA}</div>
    </div>
    <a id="download" href="{FILE_LINK}" target="_top"><img src="ShowGraphic?{DOWNLOAD_IMG}" alt="Download"></a>
  </div>
</div>
<div class="about lblPictureList">
  <p><span class="by">{AUTHOR}</span> <span>{LOGIN_NAME}</span></p>
  <p><font class="lblPictureList">{FOOTER}</p>
</div>
</body>
</html>
