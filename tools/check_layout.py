#!/usr/bin/env python3
"""The tree's own rules: how long a file may be, which folders exist, which paths the documents name.

  - a source file has at most 900 lines, unless it is a table (LONG_TABLES says which and why);
  - every folder of src/ has a line in docs/architecture.md;
  - tests/ mirrors src/: a tests/F/x_test.cpp, or x_conversation_test.cpp where the exact operations are tested, belongs to
    a src/F/x.h or x.cpp, or its folder is one of SHARED, or it is one of WHOLE;
  - a path in backquotes in README.md, CONTRIBUTING.md and docs/*.md exists.
"""

import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LIMIT = 900
LONG_TABLES = {}
# Test folders that stand for no single folder of src/.
SHARED = {"contract", "samples", "fault", "support", "tour", "sql"}
# Tests of what several files of a folder do together.
WHOLE = {
    "tests/com/callers_objects_test.cpp",
    "tests/com/lifetime_test.cpp",
    "tests/batchprint/rpt_batch_prn_test.cpp",
    "tests/csreports/cs_retrieve_exist_rpt_property_test.cpp",
    "tests/embedded/cases_test.cpp",
    "tests/embedded/contract_test.cpp",
    "tests/embedded/document_walk_test.cpp",
    "tests/embedded/laziness_test.cpp",
    "tests/odbc/contract_test.cpp",
    "tests/odbc/document_memory_test.cpp",
    "tests/odbc/tds_deviations_test.cpp",
    "tests/odbc/tds_server_test.cpp",
    "tests/suite/contract_test.cpp",
    "tests/tsql/cases_test.cpp",
}
# What documents may name although it is not in the tree: it is made by building.
MADE = ("build/", "dist/", "docs/reference/")


def files():
    listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
                            capture_output=True, text=True).stdout.splitlines()
    return [name for name in listed if (ROOT / name).is_file()]


def too_long(names):
    for name in names:
        if name.endswith((".cpp", ".h")) and name not in LONG_TABLES:
            lines = len((ROOT / name).read_text(encoding="utf-8").splitlines())
            if lines > LIMIT:
                yield f"{name}: {lines} lines, more than {LIMIT}"


def folders_without_a_line(names):
    described = (ROOT / "docs/architecture.md").read_text(encoding="utf-8")
    for folder in sorted({name.split("/")[1] for name in names if re.match(r"src/\w+/", name)}):
        if f"src/{folder}/" not in described:
            yield f"docs/architecture.md: no line about src/{folder}/"


def tests_without_a_subject(names):
    present = set(names)
    for name in names:
        match = re.fullmatch(r"tests/(\w+)/(\w+?)(?:_conversation)?_test\.cpp", name)
        if match and match[1] not in SHARED and name not in WHOLE:
            stem = f"src/{match[1]}/{match[2]}"
            if not {f"{stem}.h", f"{stem}.cpp"} & present:
                yield f"{name}: there is no {stem}.h or .cpp"


def paths_that_do_not_exist(names):
    for name in names:
        if not re.fullmatch(r"(README|CONTRIBUTING)\.md|docs/[\w-]+\.md|samples/README\.md", name):
            continue
        for path in re.findall(r"`((?:\./)?[\w.-]+(?:/[\w.-]+)+/?)`", (ROOT / name).read_text(encoding="utf-8")):
            plain = path.removeprefix("./")
            if not plain.startswith(MADE) and not any((base / plain).exists() for base in (ROOT, (ROOT / name).parent)):
                yield f"{name}: names {path}, which does not exist"


def main():
    names = files()
    findings = [finding for rule in (too_long, folders_without_a_line, tests_without_a_subject, paths_that_do_not_exist)
                for finding in rule(names)]
    print("\n".join(findings), end="\n" if findings else "")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
