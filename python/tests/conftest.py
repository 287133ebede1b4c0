import os
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
SAMPLES = sorted((ROOT / "samples").glob("*.tlv"))


@pytest.fixture(scope="session")
def tool():
    """The built command-line tool, which the package must agree with."""
    path = Path(os.environ.get("PIMTLV_TOOL", ROOT / "build" / "dev" / "tools" / "pimtlv"))
    if not path.exists():
        pytest.skip(f"no built tool at {path} (set PIMTLV_TOOL)")
    return path
