"""What the figures were measured on."""

from __future__ import annotations

import os
import pathlib
import platform
import subprocess


def describe(places: list[pathlib.Path], build: pathlib.Path) -> dict[str, str]:
    cache = cmake_cache(build)
    description = {
        "processor": processor(),
        "cores": str(os.cpu_count()),
        "memory": f"{os.sysconf('SC_PAGE_SIZE') * os.sysconf('SC_PHYS_PAGES') / 2**30:.0f} GiB",
        "kernel": f"{platform.system()} {platform.release()}",
        "compiler": first_line([cache.get("CMAKE_CXX_COMPILER", "c++"), "--version"]),
        "build type": cache.get("CMAKE_BUILD_TYPE", "unknown"),
        "Qt": first_line(["dpkg-query", "-W", "-f", "${Version}", "libqt6core6"]),
        "commit": commit(),
        "load": " ".join(f"{load:.1f}" for load in os.getloadavg()),
    }
    for place in places:
        description[f"file system of {place}"] = file_system(place)
    return description


def processor() -> str:
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            return line.split(":", 1)[1].strip()
    return platform.machine()


def cmake_cache(build: pathlib.Path) -> dict[str, str]:
    path = build / "CMakeCache.txt"
    entries = {}
    for line in path.read_text().splitlines() if path.exists() else []:
        name, found, value = line.partition("=")
        if found and ":" in name:
            entries[name.split(":")[0]] = value
    return entries


def commit() -> str:
    folder = pathlib.Path(__file__).parent
    name = first_line(["git", "-C", str(folder), "describe", "--always", "--dirty", "--abbrev=12"])
    return name or "unknown"


def file_system(place: pathlib.Path) -> str:
    return first_line(["stat", "-f", "-c", "%T", str(place)])


def first_line(command: list[str]) -> str:
    try:
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
    except OSError:
        return ""
    return (done.stdout.decode(errors="replace").splitlines() or [""])[0]
