<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Welcome - {SERVER_TITLE}</title>
<style>
{STYLE_SHEET}
</style>
</head>
<body>
<br><br>
<center><font class="lblPictureList"><b>Welcome!</b> <a id="on" href="ShowAlbum?{FORM_ARGS}" target="_top">Go on to the pictures</a></font></center>
<script>
top.location.replace(document.getElementById('on').href);
</script>
</body>
</html>
