# SPDX-License-Identifier: GPL-3.0-or-later
"""Judges a tree in which a tool has to make and undo links and may have been interrupted: by the
real contents of the files, not by what the tool says."""
import os
import re
from collections.abc import Callable
from dataclasses import dataclass
from pathlib import Path

PROFILE, TEMPORARY = "etc/.varnholt.ini", "tmp/varnholt.tmp"
# The ends are in order from the best to the worst.
DONE, BEFORE, BETWEEN, NOWHERE, LOST, BROKEN = ENDS = (
    "done", "as before", "between, nothing lost", "path leads nowhere", "content lost",
    "broken profile")

Content = bytes | dict[str, "Content"] | None


@dataclass(frozen=True)
class Goal:
    """A path that must lead to its source or, when it is undone, must no longer do so."""
    to: str
    source: str
    before: Content
    wanted: Content
    undone: bool = False


@dataclass(frozen=True)
class Job:
    """The work of a tool in a planted tree. ROOT stands for that tree in words and files."""
    tool: str
    title: str
    command: tuple[str, ...]
    goals: tuple[Goal, ...]
    planted: dict[str, Content]
    kept: tuple[str, ...] = ()  # These stay unchanged and in their place.
    links: tuple[tuple[str, str], ...] = ()
    adopts: bool = True  # Whether what exists at a path must outlive its link.
    mounts: tuple[str, ...] = ()
    disks: tuple[str, ...] = ()  # These are ext4 file systems, whose power is cut.
    stride: int = 0  # Every so many calls the second run is cut as well; never for 0.
    window: bool = False
    answered_for: bool = False  # Whether a loss fails the trial.
    # Makes the regular expression of the new profile from the old one.
    new_profile: Callable[[str], str] | None = None


@dataclass(frozen=True)
class Verdict:
    end: str
    words: str


def content(path: Path) -> Content:
    if path.is_dir():
        return {entry.name: content(entry) for entry in path.iterdir()}
    return path.read_bytes() if path.is_file() else None


def leaves(tree: Content, at: str = "") -> dict[str, bytes]:
    if isinstance(tree, dict):
        return {k: v for name in tree for k, v in leaves(tree[name], f"{at}/{name}").items()}
    return {} if tree is None else {at: tree}


def linked_part(root: Path, goal: Goal) -> str:
    """Returns how much of the content at the path comes from the source."""
    source, to = os.path.realpath(root / goal.source), root / goal.to
    real = [os.path.realpath(f"{to}{leaf}") for leaf in leaves(content(to))]
    parts = {path == source or path.startswith(source + "/") for path in real}
    return "some" if len(parts) == 2 else "all" if parts == {True} else "none"


def set_aside(root: Path, goal: Goal) -> list[str]:
    return sorted(str(path.relative_to(root)) for path in root.glob(goal.to + ".bak_*"))


def path_state(root: Path, job: Job, goal: Goal) -> Verdict:
    here, part = content(root / goal.to), linked_part(root, goal)
    absent = not os.path.lexists(root / goal.to)
    if here == goal.wanted and part == ("none" if goal.undone else "all"):
        return Verdict(DONE, "")
    if here == goal.before and part == ("all" if goal.undone else "none") and absent == (not here):
        return Verdict(BEFORE, f"{goal.to} as before")
    if here == goal.wanted:
        return Verdict(BETWEEN, f"{goal.to} linked in part")
    aside = [name for name in set_aside(root, goal) if content(root / name) == goal.before]
    if absent and aside:
        return Verdict(BETWEEN, f"{goal.to} set aside as {aside[0]}")
    shown = ("nothing stands" if absent else "a link to nothing" if here is None else
             "the earlier content of the source" if here == job.planted.get(goal.source) else
             "an empty folder" if here == {} else "a part of the content")
    return Verdict(NOWHERE, f"{shown} at {goal.to}" + (f", its own in {aside[0]}" if aside else ""))


def is_gone(root: Path, wanted: Content, names: list[str]) -> bool:
    """Returns whether a content is whole neither in one place nor, file by file, in all of them."""
    places = [leaves(content(root / name)) for name in names]
    return any(all(place.get(leaf) != text for place in places)
               for leaf, text in leaves(wanted).items())


def losses(root: Path, job: Job, done: set[str]) -> list[str]:
    own = [goal for goal in job.goals if goal.to in job.planted]
    lost = [goal.to for goal in own if job.adopts or goal.to not in done
            if is_gone(root, goal.before, [goal.to, *set_aside(root, goal), goal.source])]
    lost += [name for name in job.kept if content(root / name) != job.planted[name]]
    return [f"the content of {name} is gone" for name in lost]


def strays(root: Path) -> list[str]:
    """Returns the names of the notes and the backups that the link builder has left."""
    noted = [path for path in root.glob("etc/.varnholt*") if str(path.relative_to(root)) != PROFILE]
    return sorted(str(path.relative_to(root)) for path in [*noted, *root.rglob("*.bak_*")])


def profile_state(root: Path, job: Job) -> Verdict | None:
    """Returns None when the profile says nothing about the run."""
    if job.new_profile is None:
        return None
    planted = job.planted[PROFILE]
    assert isinstance(planted, bytes)
    old = planted.decode().replace("ROOT", str(root))
    text, temporary = ((content(root / name) or b"") for name in (PROFILE, TEMPORARY))
    assert isinstance(text, bytes) and isinstance(temporary, bytes)
    as_new = re.compile(job.new_profile(old)).fullmatch
    if text.decode() == old:
        return None if as_new(old) else Verdict(BEFORE, "the profile as before")
    if as_new(text.decode()):
        return Verdict(DONE, "")
    where = f", the new one is whole in {TEMPORARY}" if as_new(temporary.decode()) else ""
    size = f"of {len(text)} bytes is neither the old nor the new one"
    state = size if (root / PROFILE).exists() else "is missing"
    return Verdict(BROKEN, f"the profile {state}{where}")


def judge(root: Path, job: Job) -> Verdict:
    paths = {goal.to: path_state(root, job, goal) for goal in job.goals}
    lost = losses(root, job, {to for to, state in paths.items() if state.end == DONE})
    profile = profile_state(root, job)
    all_found = [*paths.values(), *(Verdict(LOST, words) for words in lost)]
    all_found += [profile] if profile else []
    all_found += [Verdict(BETWEEN, f"{name} is left") for name in strays(root)]
    ends = {verdict.end for verdict in all_found}
    end = BETWEEN if ends == {DONE, BEFORE} else max(ends, key=ENDS.index)
    telling = [v.words for v in all_found if v.end == end or ENDS.index(v.end) > 1]
    words = telling or [v.words for v in all_found if v.end == BEFORE]
    return Verdict(end, end if end in (DONE, BEFORE) else ", ".join(words))
