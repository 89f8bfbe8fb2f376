#!/usr/bin/env python3
"""Fails on any #include "..." that goes up or across the declared layers.

Each folder below is a layer. A file may include its own layer and the layers it builds on, and
through them everything further down. tests/, bench/ and fuzz/ mirror the source folders: a test
file counts as the layer whose folder it mirrors (tests/host/cli/x.cpp is host/cli) and may also
include the test files of the layers it may include; a file that mirrors no layer (bench/*.cpp,
fuzz/*.cpp) may include anything. Run from anywhere: scripts/lint.sh --layers.
"""
import os
import re
import subprocess
import sys

# The declared order, bottom to top: (layer, the layers it builds on).
LAYERS = [
    # The plug-in. Only the shell (plugin/) and the editor on top of it see the host's windows.
    ("platform", []),
    ("model", ["platform"]),
    ("engine", ["model"]),
    ("plugin", ["engine"]),
    ("editor", ["plugin"]),
    # The host toolkit, on the same platform declarations; only its Spatiola commands know the
    # plug-in's model and state block.
    ("host/graphics", ["platform"]),
    ("host/window", ["host/graphics"]),
    ("host/services", ["host/window"]),
    ("host/runtime", ["host/services"]),
    ("host/live", ["host/runtime"]),  # real-time audio through JACK
    ("host/cli", ["host/live"]),
    ("host/spatiola", ["host/cli", "plugin"]),
]

# Tests that use the other side of the host boundary as their stand-in.
TEST_STAND_INS = {
    "editor": ["host/services"],  # the host's graphics library draws the reference pictures
}

TEST_ROOTS = ("tests/", "bench/", "fuzz/")
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def reachable(start, builds_on):
    seen, todo = set(), list(start)
    while todo:
        layer = todo.pop()
        if layer not in seen:
            seen.add(layer)
            todo.extend(builds_on[layer])
    return seen


def layer_of(path):
    """(layer or None, is a test file) of a repository path."""
    is_test = path.startswith(TEST_ROOTS)
    inner = path.split("/", 1)[1] if is_test else path
    matches = [name for name, _ in LAYERS if inner.startswith(name + "/")]
    return (max(matches, key=len) if matches else None), is_test


def resolve(including, text, tracked):
    """The repository path an include names: next to the including file first, then the root."""
    beside = os.path.normpath(os.path.join(os.path.dirname(including), text))
    return beside if beside in tracked else text


def main():
    root = subprocess.run(["git", "rev-parse", "--show-toplevel"], capture_output=True,
                          text=True, check=True).stdout.strip()
    os.chdir(root)
    tracked = set(subprocess.run(["git", "ls-files"], capture_output=True, text=True,
                                 check=True).stdout.split())
    builds_on = dict(LAYERS)
    allowed = {name: reachable([name], builds_on) for name in builds_on}
    for name, extras in TEST_STAND_INS.items():
        allowed["tests:" + name] = allowed[name] | reachable(extras, builds_on)

    problems = []
    for path in sorted(p for p in tracked if p.endswith((".h", ".cpp"))):
        layer, is_test = layer_of(path)
        if layer is None and not is_test:
            continue
        with open(path, encoding="utf-8") as source:
            for number, line in enumerate(source, 1):
                match = INCLUDE.match(line)
                if not match:
                    continue
                target = resolve(path, match.group(1), tracked)
                if target not in tracked:
                    problems.append(f"{path}:{number}: \"{match.group(1)}\" is no file of the tree")
                    continue
                if layer is None:
                    continue  # a test of the whole system
                target_layer, target_is_test = layer_of(target)
                if target_is_test and not is_test:
                    problems.append(f"{path}:{number}: includes the test file {target}")
                    continue
                may = allowed.get("tests:" + layer, allowed[layer]) if is_test else allowed[layer]
                if target_layer is not None and target_layer not in may:
                    who = f"a test of {layer}" if is_test else layer
                    problems.append(f"{path}:{number}: {who} may not include {target} "
                                    f"({target_layer} is not below it)")
                elif target_layer is None and target_is_test:
                    problems.append(f"{path}:{number}: includes {target}, which mirrors no layer")
    for problem in problems:
        print(problem, file=sys.stderr)
    if problems:
        print(f"{len(problems)} include(s) against the layers (scripts/check_layers.py)",
              file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
