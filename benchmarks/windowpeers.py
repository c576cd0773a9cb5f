"""How long programs with a window take from their start, with a subtitle file given,
until its rows stand and the processor is quiet."""
import os
import pathlib
import shutil
import statistics
import subprocess
import tempfile
import time

# Debian's packages, and their programs, that show a file without asking anything first.
PEERS = ("subtitlecomposer", "gaupol", "gnome-subtitles")
# Files with more titles than this are given to our own program only: the others need
# minutes for them, or refuse them.
LONGEST_FILE = 10_000
# Seconds for which the processor time stands still when a program is quiet, between two
# looks at it, and after which a program that never is has failed.
QUIET = 0.8
LOOK = 0.02
LONGEST = 60


def tree(root):
    """The process and all that it started."""
    children = {}
    for entry in pathlib.Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                parent = int((entry / "stat").read_text().rsplit(")", 1)[1].split()[1])
            except (OSError, IndexError):
                continue
            children.setdefault(parent, []).append(int(entry.name))
    found, todo = [], [root]
    while todo:
        process = todo.pop()
        found.append(process)
        todo += children.get(process, [])
    return found


def used(processes):
    """Clock ticks (of 10 ms) of processor time."""
    ticks = 0
    for process in processes:
        try:
            fields = pathlib.Path(f"/proc/{process}/stat").read_text().rsplit(")", 1)[1].split()
        except (OSError, IndexError):
            continue
        ticks += int(fields[11]) + int(fields[12])
    return ticks


def until_quiet(command, environment):
    """Seconds from the start to the last moment of work; None when there is no end to it."""
    start = time.perf_counter()
    process = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, start_new_session=True)
    last, busy = 0, start
    try:
        while True:
            time.sleep(LOOK)
            now = time.perf_counter()
            ticks = used(tree(process.pid))
            if ticks > last:
                last, busy = ticks, now
            if process.poll() is not None or now - start > LONGEST:
                return None
            if now - busy > QUIET:
                return busy - start
    finally:
        for one in tree(process.pid):
            try:
                os.kill(one, 9)
            except ProcessLookupError:
                pass
        process.wait()


def display():
    """A display in memory of our own: its process and its name."""
    ends = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(ends[1]), "-screen", "0", "1600x1200x24"],
                              pass_fds=[ends[1]], stderr=subprocess.DEVNULL)
    os.close(ends[1])
    with os.fdopen(ends[0]) as answer:
        return server, ":" + answer.readline().strip()


def packages():
    return [*PEERS, "xvfb"]


def table(own, files, rounds):
    """`own` is the command of our program with its list open, IN standing for the file."""
    entries = [("Quelmar, list editor open", own)]
    entries += [(peer, [peer, "IN"]) for peer in PEERS if shutil.which(peer)]
    runs = {}
    server, name = display()
    with tempfile.TemporaryDirectory() as home:
        environment = dict(os.environ, DISPLAY=name, HOME=home, XDG_CONFIG_HOME=home,
                           XDG_STATE_HOME=home, QT_QPA_PLATFORM="xcb", QUELMAR_AUDIO="null")
        try:
            # The first start of a program on a new home is not what people wait for.
            for count in files:
                for _ in range(rounds + 1):
                    for what, command in entries:
                        if command is not own and count > LONGEST_FILE:
                            continue
                        words = [str(files[count]) if word == "IN" else word for word in command]
                        runs.setdefault((what, count), []).append(until_quiet(words, environment))
        finally:
            server.kill()
            server.wait()
    lines = ["| start with the file until the rows stand, seconds | " +
             " | ".join(f"{count:,}" for count in files) + " |",
             "|---|" + "---|" * len(files)]
    for what, _ in entries:
        cells = []
        for count in files:
            times = runs.get((what, count), [None, None])[1:]
            cells.append("-" if None in times else f"{statistics.median(times):.2f}")
        lines.append(f"| {what} | " + " | ".join(cells) + " |")
    return lines
