"""What all tests share."""

import pytest


@pytest.fixture(autouse=True)
def in_a_folder_of_its_own(tmp_path, monkeypatch):
    """Some calls write files of any name."""
    monkeypatch.chdir(tmp_path)
