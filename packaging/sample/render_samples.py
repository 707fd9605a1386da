#!/usr/bin/python3
"""Renders the pictures of the sample project into data/sample. Usage: render_samples.py [NAME...]

Needs NumPy and Pillow. Every picture is computed from fixed seeds; without names all of them are made.
"""

import concurrent.futures
import io
import pathlib
import sys
import time

from PIL import Image

import scenes_close
import scenes_land
import scenes_mountains
import scenes_night
import scenes_water

TARGET = pathlib.Path(__file__).resolve().parents[2] / "data" / "sample"
LARGEST = 190_000  # bytes of a JPEG file; the quality gives way, not the size in pixels

SCENES = {
    **scenes_land.SCENES,
    **scenes_close.SCENES,
    **scenes_mountains.SCENES,
    **scenes_water.SCENES,
    **scenes_night.SCENES,
}


def jpeg(picture):
    for quality in range(90, 60, -2):
        buffer = io.BytesIO()
        picture.save(buffer, "JPEG", quality=quality, optimize=True, progressive=True)
        if buffer.tell() <= LARGEST:
            break
    return buffer.getvalue()


def write(name, picture):
    path = TARGET / name
    path.parent.mkdir(parents=True, exist_ok=True)
    if path.suffix == ".jpg":
        path.write_bytes(jpeg(picture))
    elif path.suffix == ".png":
        picture.save(path, optimize=True)
    elif path.suffix == ".gif":
        picture.quantize(192, method=Image.Quantize.MEDIANCUT, dither=Image.Dither.FLOYDSTEINBERG).save(path)
    else:
        picture.save(path)
    return path.stat().st_size


def render(name):
    began = time.monotonic()
    size = write(name, SCENES[name]())
    return f"{name}: {size / 1000:.0f} kB in {time.monotonic() - began:.0f} s"


def main(wanted):
    names = [n for n in SCENES if not wanted or any(w in n for w in wanted)]
    with concurrent.futures.ProcessPoolExecutor(2) as pool:
        for line in pool.map(render, names):
            print(line, flush=True)


if __name__ == "__main__":
    main(sys.argv[1:])
