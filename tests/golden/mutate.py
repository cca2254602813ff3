#!/usr/bin/env python3
"""Shows what the golden bytes notice: changes constants and operators of src/ at random, one at a time, and runs
kipcc-verify on each changed library.

    cmake --preset dev -B build/mutants -DCMAKE_EXPORT_COMPILE_COMMANDS=ON \\
      -DCMAKE_CXX_FLAGS_DEV="-O1 -march=haswell -maes -DHWY_COMPILE_ONLY_STATIC"
    cmake --build build/mutants --target kipcc-verify
    tests/golden/mutate.py build/mutants --count=200 --seed=1

A change is made in a copy of src/, in a place that the build compiles; a source file that sees it is compiled, the
library linked, and the functions of that file, or else of its folder, are verified; where nothing differs, so is the
next source file that sees it. Prints a line for each change: `caught`, `survived`, or
`same code` where no source file's code differs. Changes that do not compile are not counted.
"""
import argparse
import collections
import json
import os
import pathlib
import random
import re
import shlex
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
LIBRARY = "libkipcct7.so.6.1"
SECONDS = 900  # that a verification may take; a change that makes it endless is caught

# What a change may touch, and what it must not.
TOKENS = re.compile(r"""
    (?P<skipped> //[^\n]* | "(?:\\.|[^"\\\n])*" | '(?:\\.|[^'\\\n])+' | ^[ ]*\#[^\n]* | static_assert[^;]*; )
  | (?P<integer> (?<![\w.]) (?:0x[0-9A-Fa-f]+ | \d[\d']*) (?=[uUlL]*(?![\w.'])) )
  | (?P<decimal> (?<![\w.]) \d+ (?:\.\d*)? (?:e[+-]?\d+)? (?=f?(?![\w.])) )
  | (?P<operator> (?<=[ ]) (?:<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%<>&|]) (?=[ ]) )
  | (?P<step> \+\+ | -- )
  | (?P<name> \bhn::\w+ )
""", re.VERBOSE | re.MULTILINE)

PAIRS = [("+", "-"), ("*", "/"), ("%", "/"), ("<", "<="), (">", ">="), ("==", "!="), ("<<", ">>"), ("&&", "||"),
         ("&", "|"), ("++", "--"), ("Add", "Sub"), ("Min", "Max"), ("And", "Or"), ("Lt", "Le"), ("Gt", "Ge"),
         ("SaturatedAdd", "SaturatedSub"), ("ShiftLeft", "ShiftRight"), ("MulAdd", "NegMulAdd"),
         ("InterleaveLower", "InterleaveUpper"), ("IfThenElse", "IfThenZeroElse"), ("AndNot", "And"),
         ("LowerHalf", "UpperHalf"), ("ConcatLowerLower", "ConcatUpperUpper"), ("Mul", "Add"), ("Xor", "Or")]
OTHER = {a: b for a, b in PAIRS[::-1]} | {b: a for a, b in PAIRS[::-1]}

Site = collections.namedtuple("Site", "file line begin end text")  # file: below src/
Unit = collections.namedtuple("Unit", "name source command functions")
Change = collections.namedtuple("Change", "site replacement users survived", defaults=[False])


def changed(site, kind, chance):
    """The token that replaces the one of a site, or None."""
    text = site.text
    if kind == "integer":
        value = max(int(text.replace("'", ""), 0) + chance.choice((-1, 1)), 0)
        value += value == int(text.replace("'", ""), 0)
        return hex(value) if text.startswith("0x") else str(value)
    if kind == "decimal":
        last = max(i for i in range(len(text.split("e")[0])) if text[i].isdigit())
        digit = int(text[last])
        digit += 1 if digit == 0 or digit < 9 and chance.random() < 0.5 else -1
        return text[:last] + str(digit) + text[last + 1:]
    if kind == "name":
        other = OTHER.get(text.removeprefix("hn::"))
        return other and "hn::" + other
    return OTHER.get(text)


class Mutants:
    def __init__(self, build, seed):
        self.build = build
        self.chance = random.Random(seed)
        self.work = build / f"work-{seed}"
        shutil.rmtree(self.work, ignore_errors=True)
        self.source = self.work / "src"
        shutil.copytree(ROOT / "src", self.source)
        self.launcher = shlex.split(os.environ.get("CMAKE_CXX_COMPILER_LAUNCHER", ""))
        commands = json.loads((build / "compile_commands.json").read_text())
        self.units = [self.unit(c) for c in commands if pathlib.Path(c["file"]).is_relative_to(ROOT / "src")
                      and "kipcct7.dir" in c["command"]]
        self.functions = collections.defaultdict(list)  # of each folder
        for unit in self.units:
            self.functions[os.path.dirname(unit.name)] += unit.functions
        steps = subprocess.check_output(["ninja", "-C", build, "-t", "commands", LIBRARY], text=True)
        self.link = steps.splitlines()[-1]
        self.users = collections.defaultdict(list)  # of each active line
        for unit in self.units:
            for place in self.active(unit):
                self.users[place].append(unit)
        self.sites = [found for file in sorted({file for file, _ in self.users}) for found in self.sites_of(file)]

    def unit(self, entry):
        name = str(pathlib.Path(entry["file"]).relative_to(ROOT / "src"))
        words = shlex.split(entry["command"].replace(str(ROOT / "src"), str(self.source)))
        at = words.index("-o")
        source = words[at + 3]
        del words[at:]
        names = subprocess.check_output(["nm", "-g", "--defined-only", self.build / "src/CMakeFiles/kipcct7.dir" /
                                         f"{name}.o"], text=True)
        return Unit(name, source, words, re.findall(r"\bkipi\w+$", names, re.MULTILINE))

    def preprocess(self, unit, output):
        subprocess.run([*unit.command, "-E", "-o", output, unit.source], cwd=self.build, check=True)

    def compile(self, sources):
        """All in one command, of which each may fail: objects beside the preprocessed sources."""
        subprocess.run([*self.launcher, *self.units[0].command, "-w", "-c", *sources], cwd=self.work,
                       stderr=subprocess.DEVNULL)

    def active(self, unit):
        """The lines, as (file, line), that the preprocessor leaves of files in src/."""
        text = self.work / "active.ii"
        self.preprocess(unit, text)
        places, file, line = set(), None, 0
        for row in text.read_text().splitlines():
            if mark := re.match(r'# (\d+) "([^"]*)"', row):
                path = (self.build / mark[2]).resolve()
                file, line = path.is_relative_to(self.source) and str(path.relative_to(self.source)), int(mark[1])
                continue
            if file and row.strip():
                places.add((file, line))
            line += 1
        text.unlink()
        return places

    def sites_of(self, file):
        text = (self.source / file).read_text()
        for token in TOKENS.finditer(text):
            line = text.count("\n", 0, token.start()) + 1
            if token.lastgroup != "skipped" and (file, line) in self.users:
                yield Site(file, line, *token.span(), token[0]), token.lastgroup

    def draw(self):
        """A change at random, with the source files that see it, in random order."""
        while True:
            site, kind = self.chance.choice(self.sites)
            replacement = changed(site, kind, self.chance)
            if replacement:
                users = self.users[site.file, site.line]
                return Change(site, replacement, self.chance.sample(users, len(users)))

    def write(self, change, output):
        """The first source file that sees the change, preprocessed."""
        path = self.source / change.site.file
        original = path.read_text()
        path.write_text(original[:change.site.begin] + change.replacement + original[change.site.end:])
        self.preprocess(change.users[0], output)
        path.write_text(original)

    def unchanged(self, unit):
        return self.work / f"{unit.name.replace('/', '-')}.ii"

    def verdicts(self, changes):
        """How the library takes each change that compiles; None where the first source file's code is the same."""
        sources = [self.work / f"{number}.ii" for number in range(len(changes))]
        for change, source in zip(changes, sources):
            source.with_suffix(".o").unlink(missing_ok=True)
            self.write(change, source)
        new = {self.unchanged(change.users[0]): change.users[0] for change in changes}
        new = {source: unit for source, unit in new.items() if not source.with_suffix(".o").exists()}
        for source, unit in new.items():
            self.preprocess(unit, source)
        self.compile([*new, *sources])
        for change, source in zip(changes, sources):
            code = source.with_suffix(".o")
            if code.exists():
                same = code.read_bytes() == self.unchanged(change.users[0]).with_suffix(".o").read_bytes()
                yield change, None if same else self.verify(change.users[0], code)

    def verify(self, unit, changed_object):
        words = shlex.split(self.link.removeprefix(": && ").removesuffix(" && :"))
        words[words.index("-o") + 1] = str(self.work / LIBRARY)
        words = [word for word in words if not word.endswith(f"/{unit.name}.o")]
        words.insert(words.index("-o"), str(changed_object))  # the first: inline functions of others give way to it
        subprocess.run(words, cwd=self.build, check=True)
        functions = unit.functions or self.functions[os.path.dirname(unit.name)]
        environment = dict(os.environ, LD_LIBRARY_PATH=str(self.work), OMP_WAIT_POLICY="passive")
        try:
            run = subprocess.run([self.build / "kipcc-verify", "--first", *functions], env=environment,
                                 timeout=SECONDS, capture_output=True)
        except subprocess.TimeoutExpired:
            return "caught"
        return "caught" if run.returncode else "survived"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--count", type=int, default=200, help="changes that compile")
    parser.add_argument("--batch", type=int, default=16, help="changes that are compiled by one command")
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    mutants = Mutants(options.build.resolve(), options.seed)
    counts, again = collections.Counter(), []
    while counts.total() < options.count:
        batch = again + [mutants.draw() for _ in range(options.batch - len(again))]
        again = []
        for change, verdict in mutants.verdicts(batch):
            survived = change.survived or verdict == "survived"
            if verdict != "caught" and len(change.users) > 1:  # the other source files that see it may have it caught
                again.append(change._replace(users=change.users[1:], survived=survived))
                continue
            verdict = "survived" if survived and verdict != "caught" else verdict or "same code"
            counts[verdict] += 1
            site = change.site
            print(f"{verdict:9} src/{site.file}:{site.line}: {site.text} -> {change.replacement} "
                  f"({change.users[0].name})", flush=True)
    print(", ".join(f"{count} {verdict}" for verdict, count in counts.items()), f"of {len(mutants.sites)} places")


if __name__ == "__main__":
    sys.exit(main())
