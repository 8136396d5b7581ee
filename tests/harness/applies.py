"""Tests that one desktop needs and another does not."""


def applies_where(condition):
    """For a test or a class of tests: elsewhere there is none. One that is skipped, in contrast, would tell of
    something that is missing on the machine."""
    return lambda test: test if condition else None
