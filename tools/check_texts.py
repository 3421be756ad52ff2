#!/usr/bin/env python3
"""Every Chinese text that the services hold is translated into both other languages.

The texts are the string literals with Chinese characters in the service folders. Each must be a key of both resource
files (without blanks at its ends), or stand in UNTRANSLATED, whose texts are data and never shown as messages.
"""

import json
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = ["frame", "reportstore", "classification", "csreports", "multiaccount", "batchprint"]
UNTRANSLATED = {
    # fixed captions of the function menu, given in all three languages
    "新建报表...", "新建報表...", "新建报表文件", "新建報表檔案",
    # words of a view text, which callers send
    "年度", "期间", "报表来源", "创建人", "报表类型",
    # regimes, as template names carry them, and the subsystem that imported reports belong to
    "小企业会计制度", "新会计准则", "企业会计制度", "报表系统",
}
CHINESE = re.compile(r"[\u3400-\u9fff]")


def literals():
    for folder in FOLDERS:
        for path in sorted((ROOT / "src" / folder).glob("*.[ch]*")):
            text = re.sub(r"^\s*//.*$", "", path.read_text(encoding="utf-8"), flags=re.M)
            # Literals that stand side by side are one text.
            for match in re.finditer(r'"(?:[^"\\\n]|\\.)*"(?:\s*"(?:[^"\\\n]|\\.)*")*', text):
                value = "".join(re.findall(r'"((?:[^"\\\n]|\\.)*)"', match[0]))
                if CHINESE.search(value):
                    yield path.relative_to(ROOT), value


def main():
    keys = {language: json.loads((ROOT / f"resources/ebo.{language}.json").read_text(encoding="utf-8"))
            for language in ("cht", "en")}
    findings = []
    for path, value in literals():
        key = value.strip(" ")
        if key in UNTRANSLATED:
            continue
        findings += [f"{path}: {value!r} has no translation in ebo.{language}"
                     for language in keys if key not in keys[language]]
    for key in sorted(set(keys["cht"]) ^ set(keys["en"])):
        findings.append(f"resources: {key!r} is in one of the files only")
    for language, table in keys.items():
        findings += [f"resources/ebo.{language}: the key {key!r} has blanks at its ends"
                     for key in table if key != key.strip(" ")]
    print("\n".join(findings), end="\n" if findings else "")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
