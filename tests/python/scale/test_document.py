"""Every example of the documents: Python's as doctests, then the shell's, in the folder that those
have left."""

import doctest
import os
import pathlib
import re
import subprocess

import pytest

SOURCE = pathlib.Path(os.environ["MORANDEL_SOURCE"])


@pytest.mark.parametrize("document", ["docs/scale.md", "docs/zh/scale.md"])
def test_examples(document, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    found = doctest.testfile(str(SOURCE / document), module_relative=False, encoding="utf-8")
    assert found.attempted > 5 and found.failed == 0

    folder = pathlib.Path(os.environ["MORANDEL_COMMAND"]).parent
    environment = {**os.environ, "PATH": f"{folder}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8"}
    blocks = re.findall(r"^```sh\n(.*?)^```$", (SOURCE / document).read_text("utf-8"), re.M | re.S)
    assert blocks
    for block in blocks:
        for command, wanted in re.findall(r"^\$ (.*)\n((?:[^$].*\n)*)", block, re.M):
            printed = subprocess.run(["sh", "-c", command], env=environment, capture_output=True,
                                     text=True, check=True).stdout
            assert printed == wanted, command
