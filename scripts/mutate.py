#!/usr/bin/env python3
"""Mutation score of one source file against chosen test binaries.

Each mutant is one small fault (a comparison, an operator, a constant, a boolean, a negation or a
deleted statement) in a private copy of the tree under build-mutants/, so the working tree and the
preset build directories are never touched. The mutants are drawn with a fixed seed from every
candidate in the file, so two runs with the same file and seed try the same faults.
"""
import argparse
import filecmp
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile

REPLACEMENTS = [  # kind, pattern, replacement
    ("compare", " < ", " <= "), ("compare", " <= ", " < "), ("compare", " > ", " >= "),
    ("compare", " >= ", " > "), ("compare", " == ", " != "), ("compare", " != ", " == "),
    ("operator", " + ", " - "), ("operator", " - ", " + "), ("operator", " * ", " / "),
    ("operator", " / ", " * "), ("operator", " && ", " || "), ("operator", " || ", " && "),
    ("operator", " += ", " -= "), ("operator", " -= ", " += "),
    ("boolean", "true", "false"), ("boolean", "false", "true"),
]
NUMBER = re.compile(r"(?<![\w.])(\d+\.\d*(?:e[-+]?\d+)?|\d+)([fFuU]?)(?![\w.])")
NEGATION = re.compile(r"(?<![=!<>])!(?!=)")
DECLARATION = re.compile(r"^(const|constexpr|static|auto|using|namespace|class|struct|template|"
                         r"return|case|default|typedef|enum)\b|^[\w:<>,* &]+[ *&]\w+\s*(=|\(|\{|;)")


def masked(line):
    """The line with string and character literals and a trailing comment blanked out."""
    out, quote, i = [], None, 0
    while i < len(line):
        c = line[i]
        if quote:
            if c == "\\":
                out.append("  ")
                i += 2
                continue
            out.append(" " if c != quote else c)
            quote = None if c == quote else quote
        elif c in "\"'":
            quote = c
            out.append(c)
        elif line.startswith("//", i):
            break
        else:
            out.append(c)
        i += 1
    return "".join(out).ljust(len(line))


def changed_number(text):
    if "." in text or "e" in text:
        value = float(text)
        return "1.0" if value == 0 else repr(round(value * 1.1 + 0.01, 6))
    return {"0": "1", "1": "0"}.get(text, str(int(text) + 1))


def candidates(lines):
    """Every mutant of the file as (line index, column, length, replacement, kind)."""
    found, in_block_comment, previous = [], False, ";"
    for index, line in enumerate(lines):
        code = masked(line)
        stripped = code.strip()
        if in_block_comment or stripped.startswith("/*"):
            in_block_comment = "*/" not in stripped
            continue
        if not stripped or stripped.startswith("#"):
            continue
        for kind, pattern, replacement in REPLACEMENTS:
            for match in re.finditer(r"(?<!\w)" + re.escape(pattern) + r"(?!\w)"
                                     if pattern.isalpha() else re.escape(pattern), code):
                if pattern == " + " and '"' in (code[match.start() - 1], code[match.end()]):
                    continue  # joins text: the mutant would not compile
                found.append((index, match.start(), len(pattern), replacement, kind))
        for match in NUMBER.finditer(code):
            found.append((index, match.start(1), len(match.group(1)),
                          changed_number(match.group(1)), "constant"))
        for match in NEGATION.finditer(code):
            found.append((index, match.start(), 1, "", "negation"))
        whole_statement = previous.endswith((";", "{", "}")) and stripped.endswith(";")
        if whole_statement and not DECLARATION.match(stripped):
            body = line.strip()
            found.append((index, line.index(body), len(body), ";", "statement"))
        previous = stripped or previous
    return found


def describe(lines, mutant):
    index, column, length, replacement, kind = mutant
    before = lines[index][column:column + length].strip() or lines[index].strip()
    return f"{index + 1}:{column + 1} {kind}: '{before}' -> '{replacement.strip()}'"


def mirror(root, copy, revision):
    """Copies the working tree's files, or those of a commit, into `copy`, leaving unchanged ones
    alone so nothing rebuilds."""
    if revision:
        exported = tempfile.mkdtemp()
        archive = subprocess.run(["git", "archive", revision], cwd=root, check=True,
                                 capture_output=True).stdout
        subprocess.run(["tar", "-x", "-C", exported], input=archive, check=True)
        try:
            return mirror(exported, copy, None)
        finally:
            shutil.rmtree(exported)
    command = ["git", "ls-files", "--cached", "--others", "--exclude-standard"]
    if not os.path.exists(os.path.join(root, ".git")):
        command = ["find", ".", "-type", "f"]
    listed = subprocess.run(command, cwd=root, check=True, capture_output=True,
                            text=True).stdout.split("\n")
    for name in filter(None, listed):
        source, target = os.path.join(root, name), os.path.join(copy, name)
        if not os.path.isfile(source):
            continue
        if os.path.exists(target) and filecmp.cmp(source, target, shallow=False):
            continue
        os.makedirs(os.path.dirname(target), exist_ok=True)
        shutil.copyfile(source, target)
        shutil.copymode(source, target)


def run(command, timeout=None, **kwargs):
    try:
        done = subprocess.run(command, capture_output=True, text=True, timeout=timeout, **kwargs)
        return done.returncode, done.stdout + done.stderr
    except subprocess.TimeoutExpired:
        return None, ""


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("file", help="source file, relative to the tree's root")
    parser.add_argument("tests", nargs="+", help="ctest names (also the targets that build them)")
    parser.add_argument("--count", type=int, default=16, help="mutants to try (default 16)")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--timeout", type=int, default=30, help="seconds per test (default 30)")
    parser.add_argument("--targets", nargs="*", default=[], help="more targets the tests need")
    parser.add_argument("--dir", default="build-mutants")
    parser.add_argument("--rev", help="score this commit instead of the working tree")
    parser.add_argument("--list", action="store_true", help="only list the chosen mutants")
    args = parser.parse_args()

    root = subprocess.run(["git", "rev-parse", "--show-toplevel"], check=True,
                          capture_output=True, text=True).stdout.strip()
    work = os.path.join(root, args.dir)
    # The copy's build directory sits where the preset puts it, so that with CCACHE_BASEDIR the
    # compiler sees the same relative paths as in the tree's own build and the cache is shared.
    copy = os.path.join(work, "src")
    build = os.path.join(copy, "build")
    mirror(root, copy, args.rev)
    path = os.path.join(copy, args.file)
    with open(path, encoding="utf-8") as f:
        original = f.read()
    lines = original.split("\n")
    chosen = candidates(lines)
    random.Random(args.seed).shuffle(chosen)
    if args.list:
        for mutant in chosen[:args.count]:
            print(describe(lines, mutant))
        return 0

    env = dict(os.environ, CMAKE_C_COMPILER_LAUNCHER="ccache", CMAKE_CXX_COMPILER_LAUNCHER="ccache",
               CCACHE_BASEDIR=os.path.dirname(root), CCACHE_NOHASHDIR="1")
    if not os.path.exists(os.path.join(build, "build.ninja")):
        code, output = run(["cmake", "--preset", "default"], cwd=copy, env=env)
        if code != 0:
            sys.exit("configure failed:\n" + output)
    targets = args.tests + args.targets
    build_command = ["cmake", "--build", build, "--target", *targets]
    test_command = ["ctest", "--test-dir", build, "--timeout", str(args.timeout),
                    "-R", "^(" + "|".join(args.tests) + ")$"]

    def verdict():
        code, output = run(build_command, env=env, timeout=900)
        if code != 0:
            return "stillborn"
        code, output = run(test_command, timeout=args.timeout * len(args.tests) + 60)
        if code is None or "Timeout" in output:
            return "timeout"
        return "survived" if code == 0 else "caught"

    print(f"{args.file}: {len(chosen)} candidates, seed {args.seed}; building the baseline",
          flush=True)
    if verdict() != "survived":
        sys.exit("the tests fail without any mutant; fix them first")
    results = {"caught": [], "timeout": [], "survived": [], "stillborn": []}
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("stopped"))
    try:
        for mutant in chosen:
            if len(results["caught"]) + len(results["timeout"]) + len(results["survived"]) \
                    >= args.count:
                break
            index, column, length, replacement, _ = mutant
            mutated = list(lines)
            mutated[index] = lines[index][:column] + replacement + lines[index][column + length:]
            with open(path, "w", encoding="utf-8") as f:
                f.write("\n".join(mutated))
            outcome = verdict()
            results[outcome].append(mutant)
            print(f"  {outcome:9} {describe(lines, mutant)}", flush=True)
    finally:
        with open(path, "w", encoding="utf-8") as f:
            f.write(original)
    tried = len(results["caught"]) + len(results["timeout"]) + len(results["survived"])
    print(f"{args.file}: caught {len(results['caught'])} of {tried}"
          f" (+{len(results['timeout'])} only by a timeout;"
          f" {len(results['stillborn'])} did not compile)")
    for mutant in results["survived"]:
        print("  survivor " + describe(lines, mutant))
    return 0


if __name__ == "__main__":
    sys.exit(main())
