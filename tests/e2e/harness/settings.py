"""Where things are, as the runner was told."""

from dataclasses import dataclass
from pathlib import Path


@dataclass
class Settings:
    bundle: Path  # The program's bundle as it was built.
    source: Path  # The project's folder: sanitizer options name files in it.
    pictures: Path  # Pictures of windows go here.
    cache: Path  # What is fetched once for all cases.
    programs: Path  # The tests' own programs.
    confine: Path  # The launcher of programs that may change certain folders only.


settings: Settings


def configure(**paths):
    global settings
    settings = Settings(**{name: Path(path).resolve() for name, path in paths.items()})
    settings.pictures.mkdir(parents=True, exist_ok=True)
    settings.cache.mkdir(parents=True, exist_ok=True)


def current():
    return settings
