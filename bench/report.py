"""The figures of bench/run in words and tables."""

# Seconds between two scans, and between two ticks of a timed session.
SCAN, TICK = 3, 1


def table(rows):
    lines = ["| " + " | ".join(rows[0]) + " |", "|" + "---|" * len(rows[0])]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows[1:]])


def report(scan, desk, start, item, menu_time, lock, seconds, starts):
    """The text of docs/benchmarks.md. `desk` was watched for so many seconds, and each start is the median of so many."""
    rows = [("processes", "agents", "Vigilo", "bare loop", "ps and lsof", "to bare loop", "ps and lsof to it", "allocations")]
    for (program, processes, agents), row in scan.items():
        if program == "ours":
            bare, ps = (scan[other, processes, agents]["real_time"] for other in ("bareLoop", "psAndLsof"))
            own = row["real_time"]
            rows.append((
                str(processes), str(agents), "%.0f µs" % own, "%.0f µs" % bare, "%.0f µs" % ps,
                "%.2f" % (own / bare), "%.0f" % (ps / own), "%.0f" % row["allocations"],
            ))
    idle_rows = [("state", "processor", "frames drawn", "bus messages")] + [
        (state, "%.2f %%" % figures[0], str(figures[1]), str(figures[2]))
        for state, figures in (("no session", desk["idle"]), ("timed session", desk["session"]))
    ]
    wakeup_rows = [("state", "scans", "ticks", "main thread", "thread that scans", "all others")] + [
        (state, str(seconds // SCAN), str(ticks), *(str(count) for count in figures[3:]))
        for state, ticks, figures in
        (("no session", 0, desk["idle"]), ("timed session", seconds // TICK, desk["session"]))
    ]
    covering, covering_wayland, (lock_load, lock_frames, lock_memory) = lock
    cover_rows = [("X11, one display of 1280 by 800", "until all is covered")] + [
        (name, "%.1f ms" % covering[name]) for name in ("vigilo", "i3lock", "xsecurelock") if name in covering
    ]
    cover_rows_wayland = [("sway, two displays of 1280 by 800", "until all is covered")] + [
        (name, "%.1f ms" % covering_wayland[name]) for name in ("vigilo", "swaylock") if name in covering_wayland
    ]
    return """# Benchmarks

Everything here was measured in one run of `bench/run` on one machine; only the ratios mean something elsewhere.

## A scan

Processor time of one scan, children included. The bare loop only opens, reads and closes each
process's command line.

%s

## The window left alone for %d s

%s

How often a thread woke meanwhile. A scan wakes the main thread twice, to begin and with what was found,
and the thread that scans once; a tick wakes the main thread once. What is beyond that is the edge of
the time watched.

%s

## Memory and start

| | Vigilo | bare Qt Quick window | ratio |
|---|---|---|---|
| memory (Pss) | %.1f MiB | %.1f MiB | %.2f |
| start to first frame, median of %d | %.0f ms | %.0f ms | %.2f |

From the start until a panel's watcher has the status item, median of %d: %.0f ms, and %.0f ms for a program
that is nothing but a QSystemTrayIcon; %.2f times as long.

## Menus

The status menu made anew, its login item read from the autostart folder, and found unchanged: %.1f µs.

## The lock

From the request until nothing of the desktop is seen, median of %d. Vigilo runs already and is asked over the bus,
by a program that has to start; the lockers are started. The displays of sway show a thousand pictures a second, so
that waiting for the next one takes no part.

%s

%s

Up for %d s over two displays of 3840 by 2160, with five agents: %.2f %% of a core, %d frames drawn, %.0f MiB (Pss),
of which the pictures of the two displays take most.
""" % (
        table(rows), seconds, table(idle_rows), table(wakeup_rows), desk["memory"], desk["bare memory"],
        desk["memory"] / desk["bare memory"], starts, start["vigilo"], start["bare"], start["vigilo"] / start["bare"],
        starts, item["vigilo"], item["bare"], item["vigilo"] / item["bare"], menu_time, starts, table(cover_rows),
        table(cover_rows_wayland), seconds, lock_load, lock_frames,
        lock_memory,
    )
