<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="referrer" content="same-origin">
<title>Welcome - {SERVER_TITLE}</title>
<style>
{STYLE_SHEET}
</style>
</head>
<body>
<br><br>
<center><font class="lblPictureList"><b>Welcome!</b> <a id="on" href="ShowAlbum?{FORM_ARGS}" target="_top">Go on to the pictures</a></font></center>
<script>
// From a slide show's tree the login comes without the show's own arguments, which stand in front of the directories.
var link = document.getElementById('on'), parts = link.getAttribute('href').split('&');
var isShow = /^(play|pause)$/.test(parts[3]) && parts[4] >= 0 && parts[5] >= 0;
if (parts[1] == 'slideshow' && !isShow) parts.splice(3, 0, 'play', 0, 5);
link.setAttribute('href', parts.join('&'));
top.location.replace(link.href);
</script>
</body>
</html>
