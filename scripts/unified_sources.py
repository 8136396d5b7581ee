#!/usr/bin/env python3
"""Groups the sources of each target into a few that include them, for clang-tidy.

Most of its time goes into the headers, which each group reads only once. The argument is a build folder
with a compile_commands.json; the groups and a compile_commands.json of their own go to build/lint, below
folders like those of their sources, and their names to the output.
"""

import json
import shlex
import shutil
import sys
from pathlib import Path

# So many that every processor has some to do.
SOURCES_IN_A_GROUP = 12
ROOT = Path(__file__).resolve().parent.parent


def target_and_command(entry):
    """Where the objects of the target lie, and how one is made without the names of its files."""
    words = shlex.split(entry["command"])
    output = words.index("-o")
    target = words[output + 1].partition(".dir/")[0]
    del words[output:output + 2]
    words.remove("-c")
    words.remove(entry["file"])
    return target, tuple(words)


def targets(build):
    """The sources of ours, by target and the command that compiles them."""
    found = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        source = Path(entry["file"])
        ours = source.is_relative_to(ROOT) and not source.is_relative_to(ROOT / "build")
        if ours and source.suffix == ".cpp":
            found.setdefault((entry["directory"], *target_and_command(entry)), []).append(source)
    return found


def write_groups(build, folder):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    entries = []
    for (directory, _, command), sources in targets(build).items():
        for start in range(0, len(sources), SOURCES_IN_A_GROUP):
            # The analyzer looks into included sources only where the one that includes them has such a name.
            group = folder / sources[0].parent.relative_to(ROOT) / f"UnifiedSource{len(entries)}.cpp"
            group.parent.mkdir(parents=True, exist_ok=True)
            group.write_text("".join(f'#include "{source}"  // NOLINT(bugprone-suspicious-include)\n'
                                     for source in sources[start:start + SOURCES_IN_A_GROUP]))
            entries.append({"directory": directory, "file": str(group),
                            "command": shlex.join([*command, "-c", str(group)])})
    (folder / "compile_commands.json").write_text(json.dumps(entries, indent=1))
    return [entry["file"] for entry in entries]


print(*write_groups(Path(sys.argv[1]).resolve(), ROOT / "build" / "lint"), sep="\n")
