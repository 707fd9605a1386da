"""Skies as functions of the direction of view: gradient, sun, layers of cloud, stars."""

import functools

import numpy as np

from camera import rgb
from noise import F, mix, sample, smoothstep, spectral


@functools.lru_cache(maxsize=None)
def texture(beta, seed, size=1024):
    return spectral(size, beta, seed)


class Sky:
    """zenith, horizon, glow: colours in linear light; sun: a unit vector."""

    def __init__(self, zenith, horizon, glow, sun, sun_power=0.0, glow_power=1.0, fall=2.6, glow_width=6.0):
        self.zenith, self.horizon, self.glow = rgb(zenith), rgb(horizon), rgb(glow)
        self.sun = sun
        self.sun_power = sun_power
        self.glow_power = glow_power
        self.glow_width = glow_width
        self.fall = fall
        self.layers = []

    def clear(self, dx, dy, dz):
        """The sky without clouds."""
        up = np.clip(dy, 0, 1)
        t = (1 - np.exp(-F(self.fall) * up * 2.2))[..., None]
        colour = mix(self.horizon, self.zenith, t)
        cosine = np.clip(dx * self.sun[0] + dy * self.sun[1] + dz * self.sun[2], 0, 1)
        wide = cosine ** F(self.glow_width) * np.exp(-up * F(2.2))
        near = cosine ** F(self.glow_width * 20)
        colour = colour + (self.glow * F(self.glow_power)) * (wide * F(0.7) + near * F(1.0))[..., None]
        if self.sun_power:
            disc = smoothstep(0.99988, 0.99994, cosine) * F(self.sun_power)
            corona = cosine ** F(2500) * F(self.sun_power * 0.08)
            colour = colour + (disc + corona)[..., None] * mix(self.glow / self.glow.max(), 1, F(0.6))
        return colour.astype(F)

    def add_clouds(self, light, dark, **options):
        """Adds a layer; the first added is the farthest."""
        self.layers.append((rgb(light), rgb(dark), options))

    def radiance(self, dx, dy, dz):
        colour = self.clear(dx, dy, dz)
        for light, dark, options in self.layers:
            colour = self._cloud(colour, dx, dy, dz, light, dark, **options)
        return colour

    def _cloud(self, colour, dx, dy, dz, light, dark, height=1.0, scale=0.12, cover=0.5, soft=0.35, seed=1,
               stretch=1.0, slices=10, thick=0.16, haze=0.10, beta=2.9, opacity=1.0, silver=1.2, turn=0.0, lit=2.2):
        """A bank of cloud as a stack of slices of noise, lit by the sun: bright where it thins towards the sun."""
        up = np.maximum(dy, F(0.012))
        base = texture(beta, seed)
        detail = texture(2.2, seed + 50)
        c, s = np.cos(turn), np.sin(turn)
        cosine = np.clip(dx * self.sun[0] + dy * self.sun[1] + dz * self.sun[2], 0, 1)
        through = np.ones_like(up)
        lights = np.zeros_like(up)
        threshold = F((0.5 - cover) * 4)
        jitter = np.random.default_rng(seed).uniform(0, 1, up.shape).astype(F)
        for k in range(slices):
            level = (k + jitter) / slices
            reach = F(height) * (1 + F(thick) * level) / up
            px, pz = dx * reach, dz * reach
            u = (px * F(c) - pz * F(s)) * F(scale)
            v = (px * F(s) + pz * F(c)) * F(scale * stretch)
            bend = sample(base, u * F(0.5) + F(0.3), v * F(0.5) + F(0.6)) * F(0.05)
            n = sample(base, u + bend, v - bend) + sample(detail, u * 6 + bend * 2, v * 6) * F(0.16)
            shape = n - threshold - F(1.4) * (level - F(0.25)) ** 2
            density = smoothstep(0, soft * 2, shape) * F(1.5 / slices * 2)
            step = F(0.035)
            toward = sample(base, u + bend + F(self.sun[0] * step), v - bend + F(self.sun[2] * step * stretch))
            bright = np.clip(F(0.45) + (n - toward) * F(0.55) * F(lit) * F(0.5) + F(0.35) * level - shape * F(0.10), 0, 1.3)
            density = np.clip(density * F(opacity), 0, 1)
            lights += through * density * bright
            through *= 1 - density
        alpha = 1 - through
        tone = np.clip(lights / np.maximum(alpha, F(1e-3)), 0, 1.3)
        rim = (cosine ** F(10)) * np.exp(-alpha * F(3.2)) * F(silver)
        shade = mix(dark, light, tone[..., None]) + (self.glow * F(self.glow_power)) * rim[..., None]
        # The air in front of a far cloud takes its contrast away.
        far = np.exp(-F(haze) / up)[..., None]
        return mix(colour, mix(self.clear(dx, dy, dz), shade, far), (alpha * np.clip(far[..., 0] * 1.3, 0, 1))[..., None])


def stars(view, count, seed, faint=0.6, size=0.9):
    """Points of light of all magnitudes, a few of them coloured."""
    rng = np.random.default_rng(seed)
    out = np.zeros((view.h, view.w, 3), F)
    count = int(count)
    x = rng.uniform(0, view.w, count)
    y = rng.uniform(0, view.h, count)
    power = rng.pareto(1.7, count) * 0.10 * faint + 0.02
    warm = rng.normal(0, 1, count)
    for i in range(count):
        r = size * view.w / 1800 * (0.55 + 0.28 * np.log1p(power[i] * 6))
        n = int(3 * r) + 2
        ys = slice(max(0, int(y[i]) - n), min(view.h, int(y[i]) + n + 1))
        xs = slice(max(0, int(x[i]) - n), min(view.w, int(x[i]) + n + 1))
        yy = np.arange(ys.start, ys.stop)[:, None] - y[i]
        xx = np.arange(xs.start, xs.stop)[None, :] - x[i]
        spot = np.exp(-(xx * xx + yy * yy) / (2 * r * r)) * min(power[i], 3.0)
        tint = np.array([1 + 0.16 * warm[i], 1, 1 - 0.16 * warm[i]])
        out[ys, xs] += (spot[..., None] * np.clip(tint, 0.6, 1.5)).astype(F)
    return out
