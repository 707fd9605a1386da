"""Landscapes from height fields: the visible point of each pixel, its slope, its shadow and the air before it."""

import functools

import numpy as np

from noise import F, mix, sample, spectral


@functools.lru_cache(maxsize=None)
def detail(beta, seed, size=512):
    return spectral(size, beta, seed)


class Terrain:
    """A tileable square of heights; tile: its side in metres. Heights are in metres as well."""

    def __init__(self, height, tile):
        self.height = height.astype(F)
        self.tile = F(tile)
        cell = tile / height.shape[0]
        self.slope_x = ((np.roll(height, -1, 1) - np.roll(height, 1, 1)) / (2 * cell)).astype(F)
        self.slope_z = ((np.roll(height, -1, 0) - np.roll(height, 1, 0)) / (2 * cell)).astype(F)
        smooth = _periodic_blur(height, 14)
        self.hollow = ((height - smooth) / max(1e-6, float((height - smooth).std()))).astype(F)

    def at(self, field, x, z):
        return sample(field, x / self.tile, z / self.tile)


def _periodic_blur(field, sigma):
    n = field.shape[0]
    fy = np.fft.fftfreq(n)[:, None]
    fx = np.fft.rfftfreq(n)[None, :]
    kernel = np.exp(-2 * (np.pi * sigma) ** 2 * (fx * fx + fy * fy))
    return np.fft.irfft2(np.fft.rfft2(field) * kernel, s=field.shape).astype(F)


class Ground:
    """What a view sees of a terrain: arrays of the size of the picture, valid where `seen`."""

    def __init__(self, terrain, view, eye, near, far, yaw=0.0, steps=1400, shape=None):
        """eye: x, height, z in metres. shape(x, z, t, height): changes the heights, e.g. to sink the distance."""
        self.terrain, self.eye = terrain, eye
        c, s = F(np.cos(yaw)), F(np.sin(yaw))
        run = (view.x[0] * c + s, c - view.x[0] * s)
        t = (near * (far / near) ** np.linspace(0, 1, steps)).astype(F)
        x = F(eye[0]) + run[0][None, :] * t[:, None]
        z = F(eye[2]) + run[1][None, :] * t[:, None]
        height = terrain.at(terrain.height, x, z)
        if shape is not None:
            height = shape(x, z, t[:, None], height)
        rows = F(view.horizon) - F(view.f) * (height - F(eye[1])) / t[:, None]
        crest = np.minimum.accumulate(rows, 0)
        pixel = np.arange(view.h, dtype=F) + F(0.5)
        index = np.empty((view.h, view.w), np.int32)
        for column in range(view.w):
            index[:, column] = np.searchsorted(-crest[:, column], -pixel)
        self.seen = index < steps
        i1 = np.clip(index, 1, steps - 1)
        columns = np.broadcast_to(np.arange(view.w)[None, :], i1.shape)
        r0, r1 = rows[i1 - 1, columns], rows[i1, columns]
        part = np.clip((r0 - pixel[:, None]) / np.maximum(r0 - r1, F(1e-4)), 0, 1)
        self.t = mix(t[i1 - 1], t[i1], part)
        self.x = F(eye[0]) + run[0][None, :] * self.t
        self.z = F(eye[2]) + run[1][None, :] * self.t
        self.height = mix(height[i1 - 1, columns], height[i1, columns], part)
        self.slope_x = terrain.at(terrain.slope_x, self.x, self.z)
        self.slope_z = terrain.at(terrain.slope_z, self.x, self.z)
        self.steep = self.upness
        self.hollow = terrain.at(terrain.hollow, self.x, self.z)

    def roughen(self, metres, amount, beta=2.2, seed=5):
        """Adds finer slopes than the height field holds; metres: side of the tile of detail."""
        texture = detail(beta, seed)
        n = texture.shape[0]
        dx = (np.roll(texture, -1, 1) - np.roll(texture, 1, 1)) * F(n / 64)
        dz = (np.roll(texture, -1, 0) - np.roll(texture, 1, 0)) * F(n / 64)
        fade = np.clip(F(metres * 12) / self.t, 0, 1) * F(amount)
        u, v = self.x / F(metres), self.z / F(metres)
        self.slope_x = self.slope_x + sample(dx, u, v) * fade
        self.slope_z = self.slope_z + sample(dz, u, v) * fade

    def grain(self, metres, beta=2.0, seed=9):
        """A field of unit deviation on the ground, for colours."""
        return sample(detail(beta, seed), self.x / F(metres), self.z / F(metres))

    @property
    def upness(self):
        return 1 / np.sqrt(1 + self.slope_x ** 2 + self.slope_z ** 2)

    def facing(self, sun):
        return (sun[1] - self.slope_x * sun[0] - self.slope_z * sun[2]) * self.upness

    def shadow(self, sun, reach, steps=40, soft=0.04):
        """1 in the sun, 0 in the shadow of other ground."""
        flat = max(1e-3, float(np.hypot(sun[0], sun[2])))
        rise = F(sun[1] / flat)
        ux, uz = F(sun[0] / flat), F(sun[2] / flat)
        light = np.ones_like(self.t)
        own = self.terrain.at(self.terrain.height, self.x, self.z)
        first = float(self.terrain.tile) / self.terrain.height.shape[0] * 2
        for d in np.geomspace(first, reach, steps):
            d = F(d)
            h = self.terrain.at(self.terrain.height, self.x + ux * d, self.z + uz * d)
            clear = (own + rise * d - h) / (d * F(soft) + F(first * 0.6))
            light = np.minimum(light, np.clip(F(0.5) + clear, 0, 1))
        return light

    def lit(self, albedo, sun, sunlight, skylight, shade=None, occlusion=0.25, bounce=0.1):
        """Colour of the ground in sunlight and skylight."""
        direct = np.clip(self.facing(sun), 0, None)
        if shade is not None:
            direct = direct * shade
        ambient = (F(0.5) + F(0.5) * self.upness) * np.clip(1 + F(occlusion) * self.hollow, 0.35, 1.5)
        light = direct[..., None] * sunlight + ambient[..., None] * skylight
        light = light + F(bounce) * (1 - self.upness)[..., None] * sunlight
        return (albedo * light).astype(F)

    def air(self, colour, haze, distance, strength=(1.0, 1.15, 1.35), low=None):
        """Blends towards the haze; low: (height, density) of a mist that thins out upwards, in metres."""
        depth = self.t / F(distance)
        if low is not None:
            ceiling, density = low
            depth = depth + F(density) * self.t / F(distance) * np.exp(-np.maximum(self.height, 0) / F(ceiling))
        keep = np.exp(-depth[..., None] * np.array(strength, F))
        return haze + (colour - haze) * keep


def over(sky, ground, colour):
    """The picture: ground where it is seen, sky elsewhere."""
    return np.where(ground.seen[..., None], colour, sky)
