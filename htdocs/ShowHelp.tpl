<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="referrer" content="same-origin">
<title>Help</title>
<style>
body { margin: 0; }
.heading { padding: 14px 20px 10px; border-bottom: 1px solid var(--line, #D5DBE5); }
.heading h1 { margin: 0; }
.help { max-width: 720px; padding: 8px 20px 32px; }
.help h2 { margin: 24px 0 6px; }
.help h2 img { vertical-align: -2px; margin-right: 8px; }
.help p, .help ul { margin: 6px 0; }
.help li { margin: 4px 0; }
.help li img { vertical-align: middle; margin-right: 4px; }
</style>
<style>
{STYLE_SHEET}
</style>
</head>
<body>
<div class="heading"><h1>Help</h1></div>
<div class="help">
<p>Welcome! This site shows pictures and movies straight from somebody's own computer. Here is how to get around.</p>

<h2><img src="ShowGraphic?album16.gif" alt="">Albums and directories</h2>
<p>The list beside this text holds every album that you may see. Click an album to open it; its directories then appear
below it, and a click on one of them opens that in turn. The place where you are is highlighted, and
<img src="ShowGraphic?new.gif" alt="new"> marks directories that changed in the last two weeks. Rest the pointer on a name
to read how many pictures and movies it holds. On a phone the list is folded away: the word &ldquo;Albums&rdquo; in the title
bar opens it.</p>

<h2><img src="ShowGraphic?picture16.gif" alt="">Three ways to look</h2>
<p>Each directory can be viewed in three ways; the buttons at its top switch between them.</p>
<ul>
<li><img src="ShowGraphic?thumbs.gif" alt=""><b>Thumbnails</b> show small pictures, some to a page.</li>
<li><img src="ShowGraphic?list.gif" alt=""><b>List</b> shows names and sizes only, which is the quickest.</li>
<li><img src="ShowGraphic?slideshow.gif" alt=""><b>Slideshow</b> shows one larger picture after the other.</li>
</ul>
<p>Where there are more files than fit on a page, the arrows <img src="ShowGraphic?previous.gif" alt="previous" align="absmiddle">
<img src="ShowGraphic?next.gif" alt="next" align="absmiddle"> turn the pages. The arrow keys of your keyboard do the same.</p>

<h2><img src="ShowGraphic?movie16.gif" alt="">The slideshow</h2>
<p>A slideshow plays by itself and starts over after the last file. <img src="ShowGraphic?pause.gif" alt="Pause" align="absmiddle">
stops it at the picture you see, <img src="ShowGraphic?play.gif" alt="Play" align="absmiddle"> lets it go on, and the arrows go
one step back or forward. On a keyboard the space bar and the arrow keys do the same, on a phone a swipe leads on. Under
&ldquo;Display Time&rdquo; you choose for how many seconds each picture stays.</p>

<h2><img src="ShowGraphic?digitalcam16.gif" alt="">Details and downloads</h2>
<p>Click a picture or movie to see it larger, with its size, its dates and, for many photographs, the camera that took it.
The arrows there lead to the files before and after it. A click on the preview opens the full picture; the download button
saves the file on your own computer, exactly as it is stored here.</p>

<h2><img src="ShowGraphic?popular16.gif" alt="">Most popular and statistics</h2>
<p><a href="ShowAlbum?ShowPopular&amp;thumbs" target="_top">Most Popular</a> gathers the directories and files that visitors
opened most often. <a href="ShowAlbum?ShowStats" target="_top">Statistics</a> tells how many visitors came, hour by hour, day by
day and month by month.</p>

<h2><img src="ShowGraphic?login16.gif" alt="">Logging in</h2>
<p>Some albums or directories may be open to invited visitors only. If the owner gave you a name and a password, choose
&ldquo;Login to Account&rdquo; in the list and enter them. Your browser has to accept cookies for this. To log out, close
the browser.</p>

<h2><img src="ShowGraphic?emaillink.gif" alt="">Sharing a place</h2>
<p>The two signs at the bottom right send the address of the page that you are looking at to someone, by mail or as an
instant message. &ldquo;Tell a friend&rdquo; above the list sends the address of the whole site.</p>

<h2><img src="ShowGraphic?help16.gif" alt="">If something seems slow</h2>
<p>Every small picture is made for you at the moment you ask for it, a few each second, so that the owner's computer
stays free for its own work. Give a page full of thumbnails a moment, or use the list.</p>
</div>
</body>
</html>
