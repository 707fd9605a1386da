"""The camera: where a pixel looks, and what happens to light between the lens and the file."""

import numpy as np
from PIL import Image

from noise import F, blur, mix

SCALE = 0.86  # of the sizes that the scenes name; a smaller one gives a quick look


class View:
    """A picture of width x height in final pixels; it is rendered finer and reduced in the end."""

    def __init__(self, width, height, horizon=0.5, lens=1.0, fine=1.5):
        self.out = (int(width * SCALE), int(height * SCALE))
        self.w = int(self.out[0] * fine)
        self.h = int(self.out[1] * fine)
        self.horizon = horizon * self.h
        self.f = lens * max(self.w, self.h)
        self.x = ((np.arange(self.w) + 0.5 - self.w / 2) / self.f).astype(F)[None, :]
        self.y = ((self.horizon - np.arange(self.h) - 0.5) / self.f).astype(F)[:, None]
        self.u = ((np.arange(self.w) + 0.5) / self.h).astype(F)[None, :]
        self.v = ((np.arange(self.h) + 0.5) / self.h).astype(F)[:, None]

    def directions(self, yaw=0.0):
        """Unit vectors of all pixels: x to the right, y up, z forward."""
        x = np.broadcast_to(self.x, (self.h, self.w))
        y = np.broadcast_to(self.y, (self.h, self.w))
        n = 1 / np.sqrt(x * x + y * y + 1)
        c, s = F(np.cos(yaw)), F(np.sin(yaw))
        return (x * c + s) * n, y * n, (c - x * s) * n


def direction(azimuth, elevation):
    """A unit vector from degrees; azimuth 0 is straight ahead, positive to the right."""
    a, e = np.radians(azimuth), np.radians(elevation)
    return np.array([np.sin(a) * np.cos(e), np.sin(e), np.cos(a) * np.cos(e)], F)


def rgb(text):
    """'#rrggbb' as linear light."""
    c = np.array([int(text[i:i + 2], 16) for i in (1, 3, 5)]) / 255.0
    return np.where(c <= 0.04045, c / 12.92, ((c + 0.055) / 1.055) ** 2.4).astype(F)


def encode(linear):
    c = np.clip(linear, 0, 1)
    return np.where(c <= 0.0031308, c * 12.92, 1.055 * np.power(c, 1 / 2.4) - 0.055)


def filmic(x):
    """A soft shoulder and a short toe, so that lights burn out slowly."""
    x = np.maximum(x, 0) * F(0.8)
    return np.clip((x * (2.51 * x + 0.03)) / (x * (2.43 * x + 0.59) + 0.14), 0, 1)


def develop(light, view, exposure=1.0, grain=0.008, vignette=0.35, bloom=0.08, saturation=1.05,
            contrast=0.0, sharpen=0.5, seed=1):
    """From linear light at the rendering size to an 8 bit picture at the final size."""
    light = np.maximum(light, 0).astype(F) * F(exposure)
    if bloom:
        glow = np.minimum(light, 8)
        light = mix(light, blur(glow, view.w / 90) * F(0.6) + blur(glow, view.w / 25) * F(0.4), F(bloom))
    if vignette:
        x = np.linspace(-1, 1, view.w, dtype=F)[None, :]
        y = np.linspace(-1, 1, view.h, dtype=F)[:, None]
        r2 = (x * x + y * y) / 2
        light = light * (1 - F(vignette) * r2 ** F(1.3))[..., None]
    c = encode(filmic(light)).astype(F)
    grey = (c @ np.array([0.3, 0.59, 0.11], F))[..., None]
    c = grey + (c - grey) * F(saturation)
    if contrast:
        c = mix(c, c * c * (3 - 2 * c), F(contrast))
    c = reduce(np.clip(c, 0, 1), view.out)
    if sharpen:
        c = c + (c - blur(c, 1.0)) * F(sharpen)
    if grain:
        rng = np.random.default_rng(seed)
        n = rng.normal(0, 1, c.shape[:2]).astype(F)
        n = n * F(0.6) + blur(n, 0.7) * F(1.2)
        grey = c.mean(2)
        c = c + (n * F(grain) * (F(0.35) + 2.6 * grey * (1 - grey)))[..., None]
    return Image.fromarray((np.clip(c, 0, 1) * 255 + 0.5).astype(np.uint8))


def reduce(image, size):
    planes = [Image.fromarray(np.ascontiguousarray(image[..., c], dtype=F)).resize(size, Image.LANCZOS)
              for c in range(3)]
    return np.stack([np.asarray(p) for p in planes], -1)
