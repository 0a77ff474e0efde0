<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="referrer" content="same-origin">
<title>Log in - {SERVER_TITLE}</title>
<style>
body { margin: 0; }
.login { max-width: 340px; margin: 40px auto 0; padding: 22px 24px 24px; border: 1px solid var(--line, #D5DBE5); border-radius: 10px; background: var(--side, #F5F7FA); }
.login h1 { margin: 0 0 6px; }
.login h1 img { vertical-align: -1px; margin-right: 8px; }
.login p { margin: 0 0 14px; }
.login .message { padding: 8px 10px; border-radius: 6px; background: #FBE3E1; color: #8C1D18; font-weight: bold; }
.login .message:empty { display: none; }
.login label { display: block; margin: 12px 0 4px; }
.login input[type=text], .login input[type=password] { width: 100%; box-sizing: border-box; padding: 9px 10px; font: inherit; font-size: 16px;
  border: 1px solid var(--line, #B8C2D2); border-radius: 6px; background: var(--page, #FFFFFF); color: inherit; }
.login button { margin-top: 18px; padding: 10px 22px; font: inherit; font-weight: bold; border: 0; border-radius: 6px; cursor: pointer;
  background: var(--select, #2B6CD4); color: var(--select-ink, #FFFFFF); }
.login :focus-visible { outline: 2px solid var(--link, #1F57B5); outline-offset: 1px; }
.about { padding: 22px 20px; text-align: center; }
.about p { margin: 4px 0; }
@media (max-width: 420px) { .login { margin: 12px 12px 0; } }
</style>
<style>
{STYLE_SHEET}
</style>
<script>
// The server compares name and password just as they arrive, so they travel as plain text, which leaves blanks, accents
// and signs alone. The place to return to holds markers for special characters in names, which would be taken for these
// characters on the way; written as character references they come back as markers.
function SendPlainly(form) {
  var place = encodeURIComponent(form.elements.args.value.replace(/</g, '&lt;'));
  var plain = document.createElement('form');
  plain.method = 'post';
  plain.action = 'SendLogin';
  plain.enctype = 'text/plain';
  [['username', form.elements.username.value], ['&password', form.elements.password.value], ['&args', place]].forEach(function (field) {
    var input = document.createElement('input');
    input.type = 'hidden';
    input.name = field[0];
    input.value = field[1];
    plain.appendChild(input);
  });
  document.body.appendChild(plain);
  plain.submit();
  return false;
}
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
<div class="login">
  <h1><img src="ShowGraphic?login16.gif" alt="">Log in</h1>
  <p class="message">{MESSAGE_TO_VISITOR}</p>
  <p class="lblPictureList">Some albums and directories of {SERVER_TITLE} are open to invited visitors only. Please enter the name and password that you were given.</p>
  <form method="post" action="SendLogin" onsubmit="return SendPlainly(this);">
    <input type="hidden" name="args" value="{FORM_ARGS}">
    <label for="username">User name</label>
    <input type="text" id="username" name="username" autocomplete="username" autocapitalize="none" required autofocus>
    <label for="password">Password</label>
    <input type="password" id="password" name="password" autocomplete="current-password" required>
    <button type="submit">Log in</button>
  </form>
</div>
<div class="about lblPictureList">
  <p>{AUTHOR}</p>
  <p><font class="lblPictureList">{FOOTER}</p>
</div>
</body>
</html>
