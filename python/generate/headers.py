"""Makes what the module has from the public headers: headers.py briefs|names|manual HEADER..., to standard output.

briefs: one C string for each function, in the header's order; the header comes through docs/describe.awk.
names:  the module kipcc.names, the enumerations of the headers.
manual: the module kipcc.manual, the pages of the groups.
"""

import re
import sys

NAMES = '"""The enumerations of the C headers, by their names there."""\n\nfrom enum import IntEnum\n'
MANUAL = '''"""The manual of the C functions, a page for each group: ``print(kipcc.manual.PAGES["ycbcr"])``."""

PAGES = {
'''


def comment(text):
    return " ".join(text.split())


def briefs(text):
    for brief in re.findall(r"/\*\* @brief (.*?) \*/\nKIPAPI KipStatus kipi", text):
        yield f'"{brief}",\n'


def enumeration(name, about, members):
    yield f'\n\nclass {name}(IntEnum):\n    """{about}"""\n\n'
    for member, value, meaning in members:
        yield f"    {member} = {value}  # {comment(meaning)}\n" if meaning else f"    {member} = {value}\n"
    for member, _, _ in members:
        yield f"\n\n{member} = {name}.{member}" if member == members[0][0] else f"\n{member} = {name}.{member}"
    yield "\n"


def names(text):
    """Typedefs of enumerations, and the status codes that a header adds with #define."""
    yield NAMES
    added = re.findall(r"#define (kipStatus\w+) \(\(KipStatus\)(-?\d+)\)\s*/\*\*< (.*?) \*/", text, re.S)
    for about, body, name in re.findall(r"/\*\* ([^/]*?) \*/\ntypedef enum(?: KIP_INT)? \{(.*?)\} (\w+);", text, re.S):
        members = re.findall(r"(kip\w+) = (-?\d+),?(?:\s*/\*\*< (.*?) \*/)?", body, re.S)
        yield from enumeration(name, comment(about), members + (added if name == "KipStatus" else []))


def manual(text):
    yield MANUAL
    for name, title, body in re.findall(r"/\*\* @defgroup (\w+) (.*?)\n(.*?)@\{", text, re.S):
        if name == "types":
            continue
        lines = [re.sub(r"^ \* {0,2}", "", line).rstrip() for line in body.splitlines()]
        page = "\n".join([title, "=" * len(title), "", *lines]).rstrip() + "\n"
        yield f'    "{name}": r"""{page}""",\n'
    yield "}\n"


def main(what, *headers):
    text = "".join(open(header, encoding="utf-8").read() for header in headers)
    sys.stdout.writelines({"briefs": briefs, "names": names, "manual": manual}[what](text))


main(*sys.argv[1:])
