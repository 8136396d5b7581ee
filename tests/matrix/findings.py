"""What is found out about one capability in one environment."""

from dataclasses import dataclass

WORKS, LACKS, FAILED = "works", "lacks", "failed"

# In the order of the scenario, with the headings of the document.
CAPABILITIES = {
    "awake": "keeps awake",
    "item": "status item",
    "cover": "Agent Lock",
    "unlock": "unlocking",
    "system": "Apple Lock",
    "quit": "quitting",
    "login": "Launch at Login",
}


@dataclass
class Finding:
    """`words` say by which means it works, what there is in its place, or what went wrong."""

    outcome: str
    words: str


def works(words):
    return Finding(WORKS, words)


def lacks(words):
    """The environment cannot do it, and has been seen not to."""
    return Finding(LACKS, words)
