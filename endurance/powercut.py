#!/usr/bin/env python3
"""What a power cut does to the counts (D2), and what the safety costs (D5): powercut.py FOLDER_OF_THE_PROGRAMS

The system calls of the running site are noted by strace and played again up to random moments."""
from endurance import *
from store import JPEG_HEAD, THUMBS, ask_thumb, attached, files_of, is_whole, total

TRACED = "openat,pwrite64,ftruncate,fdatasync,fsync,unlink,sendto"


def unescaped(text):
    return bytes.fromhex(text.replace("\\x", ""))


def read_trace(path, is_answer):
    """The writes to the database in order: (what, file's end, offset or size, bytes), what one of w(rite), t(runcate),
    s(ync), u(nlink), or ack for a sendto whose bytes is_answer takes."""
    operations = []
    call = re.compile(r'(?:\d+ +)?(\w+)\((?:\d+<((?:\\x..)*)[^>]*>|"((?:\\x..)*)")(.*)')
    kinds = {"ftruncate": "t", "fsync": "s", "fdatasync": "s", "unlink": "u"}
    for found in filter(None, map(call.match, open(path))):
        name, rest = found.group(1), found.group(4)
        file = os.path.basename(unescaped(found.group(2) or found.group(3) or "").decode(errors="replace"))
        end = file[len("db_v9.mdb"):]
        data = re.search(r'"((?:\\x..)*)"(?:, \d+, (\d+))?', rest)
        if name == "sendto":
            if data and is_answer(unescaped(data.group(1))):
                operations.append(("ack", None, 0, b""))
        elif file.startswith("db_v9.mdb") and end != "-shm":
            if name == "pwrite64":
                operations.append(("w", end, int(data.group(2)), unescaped(data.group(1))))
            elif name in kinds:
                size = int(re.search(r", (\d+)", rest).group(1)) if name == "ftruncate" else 0
                operations.append((kinds[name], end, size, b""))
    return operations


def strace(output, *more):
    return ["strace", "-f", "-y", "-xx", "-s", "70000", "-o", output, "-e", "trace=" + TRACED, *more]


def apply(image, operation):
    what, end, where, data = operation
    if what == "u":
        image.pop(end, None)
        return
    content = image.setdefault(end, bytearray())
    size = where + len(data)
    content.extend(bytes(max(0, size - len(content))))
    if what == "w":
        content[where:size] = data
    elif what == "t":
        del content[where:]


def after_cut(base, operations, chance):
    """The files after a power cut behind these operations: what no sync has reached is lost, kept in part or torn."""
    image = {end: bytearray(content) for end, content in base.items()}
    pending = []
    for operation in operations:
        what, end = operation[:2]
        if what == "s":
            for each in pending:
                if each[1] == end:
                    apply(image, each)
            pending = [each for each in pending if each[1] != end]
        elif what == "u":
            pending = [each for each in pending if each[1] != end]
            apply(image, operation)
        elif what != "ack":
            pending.append(operation)
    how = chance.choice(("none", "prefix", "subset", "torn"))
    if how == "prefix":
        pending = pending[:chance.randrange(len(pending) + 1)]
    elif how == "none":
        pending = []
    else:
        pending = [each for each in pending if chance.random() < 0.5]
    for what, end, where, data in pending:
        if how == "torn" and what == "w" and len(data) > 512:
            data = data[:512 * chance.randrange(len(data) // 512 + 1)]
        apply(image, (what, end, where, data))
    return image


def try_cuts(base, operations, count, cuts, promised):
    """Cuts at random moments. count(database) tells the events there; promised(operations before the cut) how many
    there must be. Returns how many cuts damaged the file, and how many lost what was promised, and the greatest loss
    of acknowledged events."""
    chance = random.Random(1)
    damaged = broken = greatest = 0
    with tempfile.TemporaryDirectory(prefix="pixmora-cut-") as folder:
        for cut in range(cuts):
            before = operations[:chance.randrange(len(operations) + 1)]
            path = "%s/%d.mdb" % (folder, cut)
            for end, content in after_cut(base, before, chance).items():
                Path(path + end).write_bytes(content)
            try:
                with contextlib.closing(sqlite3.connect(path)) as database:
                    damaged += not is_whole(database)
                    found = count(database)
            except sqlite3.DatabaseError:
                damaged += 1
                continue
            broken += found < promised(before)
            greatest = max(greatest, sum(each[0] == "ack" for each in before) - found)
            for end in ("", "-wal", "-shm"):
                Path(path + end).unlink(missing_ok=True)
    return damaged, broken, greatest


def trace_visits(programs, thumbs):
    """(files before, operations while serving): every picture's answer is the acknowledgement of an event."""
    with contextlib.closing(Site(programs)) as site:
        site.start()
        ask_thumb(site)  # what the totals' first rows count is 1
        base = files_of(site.database)
        log = site.folder + "/trace"
        with attached(site, log, strace(log)):
            for number in range(thumbs):
                if not ask_thumb(site, number):
                    raise RuntimeError("no thumbnail")
        site.kill()
        return base, read_trace(log, lambda data: JPEG_HEAD in data)


def acks_by_last_log_sync(operations):
    """What a checkpoint or a sync of the log has carried to the disk. An event is in the log before its answer."""
    last = max((i for i, each in enumerate(operations) if each[:2] == ("s", "-wal")), default=0)
    return sum(each[0] == "ack" for each in operations[:last])


def trace_owner(programs, users):
    """(files before, operations of the owner's commands): the end of each command is the acknowledgement."""
    with contextlib.closing(Site(programs)) as site:
        base = files_of(site.database)
        operations = []
        for number in range(users):
            log = "%s/trace" % site.folder
            subprocess.run([*strace(log), site.programs + "/pixmoractl", "user", "add", "user%d" % number, "secret"],
                           env=site.environment, check=True)
            operations += read_trace(log, lambda _: False)
            operations.append(("ack", None, 0, b""))
        return base, operations


def commits(operations):
    """Frames of the log that end a transaction: 24 bytes of head with the database's size in them."""
    return sum(each[:2] == ("w", "-wal") and len(each[3]) == 24 and each[3][4:8] != bytes(4) for each in operations)


def check_cuts(programs, results):
    cuts, visits = 400, 2400  # some checkpoints' worth
    base, operations = trace_visits(programs, visits)
    damaged, broken, greatest = try_cuts(base, operations, lambda database: total(database, THUMBS) - 1, cuts,
                                         acks_by_last_log_sync)
    syncs = sum(each[:2] == ("s", "-wal") for each in operations)
    results.add("D2", "power cuts while serving: database whole", cuts, "%d damaged" % damaged, "0", damaged == 0)
    results.add("D2", "... and lost is at most what came behind the last checkpoint (%d of them)" % syncs, cuts,
                "%d cuts lost more; greatest loss %d of %d" % (broken, greatest, visits), "0 cuts", broken == 0 and syncs > 0)
    serving = commits(operations)
    per_thousand = 1000 * sum(each[0] == "s" for each in operations) / serving
    results.add("D5", "syncs while serving", serving, "%.1f in 1,000 commits" % per_thousand, "<= 10",
                per_thousand <= 10)

    base, operations = trace_owner(programs, 40)
    count = lambda database: database.execute("SELECT count(*) FROM Users").fetchone()[0]
    everything = lambda before: sum(each[0] == "ack" for each in before)
    damaged, broken, _ = try_cuts(base, operations, count, cuts, everything)
    results.add("D2", "power cuts while the owner edits (pixmoractl): database whole, nothing lost", cuts,
                "%d damaged, %d lost something" % (damaged, broken), "0, 0", damaged == broken == 0)


if __name__ == "__main__":
    run_rows([("D2", check_cuts)])
