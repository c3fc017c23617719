"""The size of the core library without its symbols."""
import pathlib
import platform
import shutil
import subprocess
import sys
import tempfile

LIMIT_KIB = 400
LIMITED = "aarch64"  # the processor that the target names


def stripped_size(library, strip):
    with tempfile.TemporaryDirectory() as folder:
        copy = pathlib.Path(folder) / "stripped.so"
        subprocess.run([strip, "-o", copy, library], check=True)
        return copy.stat().st_size


def row(processor, build, strip, note):
    """Nothing when the library was not built for that processor, or cannot be stripped here."""
    library = build / "libkoine.so"
    if not library.exists() or not shutil.which(strip):
        return []
    size = stripped_size(library.resolve(), strip)
    what = {"group": "size", "what": f"the core library on {processor}, stripped", "value": size / 1024,
            "unit": "KiB", "note": note, "target": "report"}
    if processor == LIMITED:
        what |= {"target": "at most", "limit": LIMIT_KIB, "met": size <= LIMIT_KIB * 1024}
    return [what]


def rows(root):
    """This machine's library, and that for aarch64 where build/aarch64 holds one."""
    here = platform.machine()
    found = row(here, root / "build" / "bench", "strip", "compiled with -O2")
    if here != LIMITED:
        found += row(LIMITED, root / "build" / LIMITED, f"{LIMITED}-linux-gnu-strip",
                     f"as `./run cross {LIMITED}` builds it")
    if not any("limit" in one for one in found):
        print(f"bench: no row for {LIMITED}; `./run cross {LIMITED}` builds its library first", file=sys.stderr)
    return found
