"""What git knows of the tree: its commit, and the files that changed of late.

A clone may be shallow or without an origin, and a tree may come without a history at all.
"""

from __future__ import annotations

import pathlib
import subprocess

RECENT_COMMITS = 20


def git(root: pathlib.Path, *arguments: str) -> str | None:
    """What git prints, or nothing where it is missing or refuses."""
    try:
        result = subprocess.run(["git", "-C", root, *arguments], capture_output=True, check=False)
    except OSError:
        return None
    return result.stdout.decode(errors="surrogateescape") if result.returncode == 0 else None


def is_repository(root: pathlib.Path) -> bool:
    """A tree without a history may lie inside of somebody else's repository."""
    top = git(root, "rev-parse", "--show-toplevel")
    return top is not None and pathlib.Path(top.rstrip("\n")) == root.resolve()


def commit(root: pathlib.Path) -> str | None:
    found = git(root, "rev-parse", "--verify", "--quiet", "HEAD") if is_repository(root) else None
    return found.strip() if found else None


def changed_since(root: pathlib.Path, base: str) -> set[str]:
    """Files whose content differs from a commit's, in the tree as it is now; one that only moved does not."""
    fields = (git(root, "diff", "-z", "--name-status", "-M", "--diff-filter=AMRT", base) or "").split("\0")
    changed = set((git(root, "ls-files", "-z", "--others", "--exclude-standard") or "").split("\0")) - {""}
    position = 0
    while position + 1 < len(fields):
        status, width = fields[position], 3 if fields[position].startswith("R") else 2
        if status != "R100":
            changed.add(fields[position + width - 1])
        position += width
    return changed


def recently_changed(root: pathlib.Path) -> set[str]:
    """Files that differ from origin's main branch; where none do, those of the last commits."""
    if not is_repository(root):
        return set()
    begin = git(root, "merge-base", "HEAD", "origin/main")
    if begin and (changed := changed_since(root, begin.strip())):
        return changed
    commits = (git(root, "rev-list", "--first-parent", f"--max-count={RECENT_COMMITS + 1}", "HEAD") or "").split()
    return changed_since(root, commits[-1]) if commits else set()
