<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>{DIR_TITLE} - {SERVER_TITLE}</title>
<style>
body { margin: 0; }
a:focus-visible { outline: 2px solid var(--link, #1F57B5); outline-offset: 2px; }
img { border: 0; max-width: 100%; height: auto; }
.heading { display: flex; flex-wrap: wrap; align-items: center; justify-content: space-between; gap: 6px 16px; padding: 14px 20px 10px;
  border-bottom: 1px solid var(--line, #D5DBE5); }
.heading h1 { margin: 0; overflow-wrap: anywhere; }
#directory::before { content: "\2039\00a0"; }
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
// This page's own address holds album, count word and path: the directory's link and the file's name come from it.
function NameThings() {
  var query = location.search.substr(1).split('&'), parts = (query[2] || '').split('/');
  var name = decodeURIComponent(parts.pop()).replace(/<(amp|plus|pound)>(and|num)<\1>/g, function (token, kind) {
    return { amp: '&', plus: '+', pound: '#' }[kind];
  });
  document.getElementById('download').setAttribute('download', name);
  var directory = document.getElementById('directory');
  directory.href = 'ShowAlbum?' + [query[0], 'thumbs', '1'].concat(parts.slice(1)).join('&');
  document.title = name + ' - ' + document.title;
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
function ArrowKey(event) {
  var arrow = { ArrowLeft: 'previous.gif', ArrowRight: 'next.gif' }[event.key];
  if (!arrow || event.target.tagName === 'VIDEO' || event.altKey || event.ctrlKey || event.metaKey) return;
  var image = document.querySelector('.arrows a > img[src$="' + arrow + '"]');
  if (image) image.parentNode.click();
}
document.addEventListener('DOMContentLoaded', NameThings);
document.addEventListener('DOMContentLoaded', ShowMovie);
document.addEventListener('keydown', ArrowKey);
</script>
</head>
<body>
<div class="heading">
  <h1><a id="directory" target="_top" title="Back to this directory">{DIR_TITLE}</a></h1>
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
