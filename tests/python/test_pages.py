"""What the pages show happens as they show it; what is generated is whole."""

import ast
import doctest
import os
import pathlib

import kipcc
import kipcc.dask

ROOT = pathlib.Path(__file__).parents[2]


def test_pages(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    page = doctest.testfile(str(ROOT / "docs/python.md"), module_relative=False, optionflags=doctest.ELLIPSIS)
    assert page.attempted > 20 and page.failed == 0
    for module in (kipcc, kipcc.dask):
        shown = doctest.testmod(module)
        assert shown.attempted > 0 and shown.failed == 0


def test_stub_has_what_the_module_has():
    stub = pathlib.Path(os.environ["KIPCC_BUILD"], "python/kipcc/_native.pyi").read_text()
    named = {node.name for node in ast.parse(stub).body if isinstance(node, ast.FunctionDef)}
    assert set(kipcc.functions) < named and "convert" in named


def test_every_group_has_a_page():
    assert {f.group for f in kipcc.functions.values()} <= kipcc.manual.PAGES.keys()
