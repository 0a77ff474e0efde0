"""The photographs that are converted: the caller's, or drawn ones where there are none."""
import functools
import os
import shutil
import subprocess


def size_of(path):
    words = subprocess.run(["identify", "-format", "%w %h", path], stdout=subprocess.PIPE, text=True, check=True)
    return tuple(int(word) for word in words.stdout.split())


def draw(folder, top):
    """Sample pictures, and one of 12 megapixels with a photograph's grain."""
    subprocess.run([os.path.join(top, "scripts", "draw-samples"), folder], check=True)
    subprocess.run(["convert", "-seed", "7", "-size", "1000x750", "plasma:navy-gold", "-resize", "4000x3000", "-attenuate",
                    "0.25", "+noise", "Gaussian", "-quality", "90", os.path.join(folder, "twelve_megapixels.jpg")],
                   check=True)


def as_phones_store(jpeg, folder):
    """The picture in today's formats; a HEIC as cameras make it, with a small picture inside, and one without."""
    os.makedirs(folder)
    for name, options in {"small_inside": ["-t", "512"], "alone": []}.items():
        subprocess.run(["heif-enc", "-q", "50", *options, jpeg, "-o", os.path.join(folder, "photo_%s.heic" % name)],
                       stdout=subprocess.DEVNULL, check=True)
    for ending in ("png", "webp"):
        subprocess.run(["convert", jpeg, os.path.join(folder, "photo_%s.%s" % (ending, ending))], check=True)


class Photographs:
    """A flat folder with one large and some small JPEG files, in `folder`."""

    def __init__(self, folder, source, top, small=4):
        self.are_drawn = source is None
        if self.are_drawn:
            source = os.path.join(folder, "drawn")
            draw(source, top)
        paths = sorted(os.path.join(place, name) for place, _, names in os.walk(source) for name in names
                       if name.lower().endswith(".jpg"))
        sizes = {path: size_of(path) for path in paths}
        paths.sort(key=lambda path: sizes[path][0] * sizes[path][1])
        self.folder = os.path.join(folder, "photographs")
        os.makedirs(self.folder)
        chosen = [paths[-1], *paths[:small]]
        for number, path in enumerate(chosen):
            shutil.copy(path, os.path.join(self.folder, "photo%d.jpg" % number))
        self.large = "photo0"
        self.small = ["photo%d" % number for number in range(1, len(chosen))]
        self.sizes = {"photo%d" % number: sizes[path] for number, path in enumerate(chosen)}

    @functools.cached_property
    def newer(self):
        """The folder of the large picture in today's formats."""
        folder = os.path.join(os.path.dirname(self.folder), "newer")
        as_phones_store(self.path(self.large), folder)
        return folder

    def path(self, name):
        return os.path.join(self.folder, name + ".jpg")

    def description(self):
        kind = "drawn" if self.are_drawn else "photographs"
        small = [self.sizes[name] for name in self.small]
        return "Pictures (%s): one of %d x %d pixels, and %d of %s." % (
            kind, *self.sizes[self.large], len(small), ", ".join("%d x %d" % size for size in sorted(set(small))))
