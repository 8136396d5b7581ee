"""Libraries of ours that are loaded into a program before its own."""

import os


def preload(folder, *libraries):
    """What the program's environment needs for it. The libraries are loaded from links in the folder, since
    the loader takes a blank in a path, as that of the project may have, for its end."""
    links = []
    for library in libraries:
        link = os.path.join(folder, os.path.basename(library))
        if not os.path.islink(link):
            os.symlink(os.path.abspath(library), link)
        links.append(link)
    return {"LD_PRELOAD": ":".join(links)}
