"""Profiles of perf: what share of a program's time is spent in a library and in what that calls."""

import re


def share_within(lines, is_within):
    """@param lines      of `perf script -F ip,sym,dso`: a frame each, samples end with empty ones
    @param is_within  tells of the path of an object file whether it belongs to the library
    @return the share of the samples that have it anywhere among their frames, and how many samples there are"""
    samples = inside = 0
    frames = []
    for line in [*lines, ""]:
        if line.strip():
            frames.append(re.search(r"\(([^()]*)\)\s*$", line)[1])
        elif frames:
            samples += 1
            inside += any(map(is_within, frames))
            frames = []
    if not samples:
        raise ValueError("no samples")
    return inside / samples, samples
