"""Lakes, the sea, a shore."""

import functools

import numpy as np

from camera import View, develop, direction, rgb
from noise import F, fbm, mix, sample, sample_clamped, smoothstep
from scenes_mountains import alps, cloud_shadows, foothills, roughen_rock, snow_and_rock, unit
from sky import Sky, texture
from terrain import Ground, Terrain, over
from trees import misty_forest


@functools.lru_cache(maxsize=None)
def waves(seed, wind=(0.0, 1.0), size=1024, tile=120.0, longest=22.0, spread=3.0):
    """Height and slopes of wind waves by their spectrum; tile in metres, heights of unit deviation."""
    rng = np.random.default_rng(seed)
    ky = np.fft.fftfreq(size)[:, None] * size * 2 * np.pi / tile
    kx = np.fft.rfftfreq(size)[None, :] * size * 2 * np.pi / tile
    k = np.sqrt(kx * kx + ky * ky)
    k[0, 0] = 1
    peak = 2 * np.pi / longest
    cosine = (kx * wind[0] + ky * wind[1]) / k
    power = np.exp(-(peak / k) ** 2) / k ** 4 * (0.06 + np.abs(cosine) ** spread) * np.exp(-(k * 0.05) ** 2)
    power[0, 0] = 0
    spectrum = np.sqrt(power) * np.exp(1j * rng.uniform(0, 2 * np.pi, k.shape))
    height = np.fft.irfft2(spectrum, s=(size, size))
    sx = np.fft.irfft2(spectrum * 1j * kx, s=(size, size))
    sz = np.fft.irfft2(spectrum * 1j * ky, s=(size, size))
    s = height.std()
    return (height / s).astype(F), (sx / s).astype(F), (sz / s).astype(F)


def mirror(view, upper, eye, ripple, deep, seed=3, tile=60.0, wind=(0.3, 1.0), longest=9.0, start=None, tint=(1, 1, 1)):
    """Water from the waterline down, which mirrors the picture above it.

    eye: height of the camera in metres; ripple: deviation of the waves' height in metres.
    """
    line = int(view.horizon if start is None else start)
    rows = np.arange(line, view.h)
    below = (rows - view.horizon + 1.0).astype(F)[:, None]
    t = F(eye * view.f) / np.maximum(below, 1)
    x = view.x * t
    _, sx, sz = waves(seed, wind, 1024, tile, longest)
    size = F(ripple)
    fade = np.clip(F(400) / t, 0.02, 1)
    u, v = x / F(tile), np.broadcast_to(t, x.shape) / F(tile)
    slope_x = (sample(sx, u, v) + F(0.4) * sample(sx, v * F(2.7), u * F(2.7))) * size
    slope_z = (sample(sz, u, v) + F(0.4) * sample(sz, v * F(2.7), u * F(2.7))) * size
    graze = np.broadcast_to(below / F(view.f), x.shape)
    up = np.maximum(graze + 2 * slope_z * fade, F(0.004))
    source_y = F(2 * line) - F(view.horizon) - up * F(view.f)
    source_y = np.where(source_y < 0, -source_y, source_y)
    source_x = np.arange(view.w)[None, :] + 2 * slope_x * fade * F(view.f) * np.clip(graze * 3, 0.05, 1)
    reflected = sample_clamped(upper, source_x, source_y)
    angle = np.clip(graze + slope_z * fade, 0.01, 1)
    fresnel = F(0.02) + F(0.98) * (1 - np.clip(angle * F(1.0), 0, 1)) ** 5
    water = mix(np.broadcast_to(rgb(deep), reflected.shape), reflected * np.array(tint, F), fresnel[..., None])
    out = upper.copy()
    out[line:] = water
    return out


def mirror_lake():
    view = View(1600, 1067, horizon=0.56, lens=1.0)
    sun = direction(-128, 26)
    sky = Sky("#3a7cc4", "#cfe2f0", "#fff0d8", sun, glow_power=0.3)
    sky.add_clouds("#ffffff", "#9db2ca", scale=0.13, cover=0.47, soft=0.35, seed=14, slices=12, thick=0.03)
    terrain = alps(21, 2300)

    def basin(x, z, t, height):
        shore = F(1500) + sample(texture(2.6, 3), x / F(5200), z / F(5200)) * F(170)
        return np.where(t < shore, -50, (height * F(0.95) - 470) * smoothstep(0, 3600, t - shore) + (t - shore) * F(0.05))

    ground = Ground(terrain, view, (4200, 6, 200), 500, 16000, shape=basin, steps=1700)
    albedo, cover = snow_and_rock(ground, 820, "#6b655f", seed=6, steep=(0.5, 0.66))
    n = ground.grain(420, 2.2, 11)
    fine = ground.grain(90, 1.0, 12)
    forest = smoothstep(620, 330, ground.height + n * 90) * smoothstep(0.45, 0.6, ground.steep + n * F(0.05))
    green = mix(rgb("#16281a"), rgb("#3d5626"), np.clip(F(0.4) + F(0.3) * fine + F(0.2) * n, 0, 1)[..., None])
    albedo = mix(albedo, green, (forest * (1 - cover))[..., None])
    roughen_rock(ground, cover)
    shade = ground.shadow(sun, 6000) * cloud_shadows(7000, 8, dark=0.4)(ground)
    colour = ground.lit(albedo, sun, rgb("#ffeeda") * 2.7, rgb("#87a9da") * 0.62, shade, occlusion=0.2)
    colour = ground.air(colour, rgb("#a9c3e0") * 0.95, 30000)
    upper = over(sky.radiance(*view.directions()), ground, colour)
    light = mirror(view, upper, 6, 0.0014, "#0d2a2c", tile=50, longest=5, tint=(0.86, 0.92, 0.95))
    return develop(light, view, exposure=1.15, contrast=0.2, seed=41)


def evening_lake():
    view = View(1600, 1067, horizon=0.52, lens=0.95)
    sun = direction(9, 2.2)
    sky = Sky("#35528c", "#ffb27a", "#ff8a48", sun, sun_power=8, glow_power=0.9, fall=1.9, glow_width=9)
    sky.add_clouds("#ffb48a", "#6a5672", scale=0.11, cover=0.52, soft=0.5, seed=27, slices=10, thick=0.03, stretch=1.5, silver=1.4, haze=0.05)
    terrain = foothills(7, 900)

    def shores(x, z, t, height):
        open_water = smoothstep(0.10, 0.42, np.abs(x / t - 0.12)) * 2600 + 1500
        return np.where(t < 7200 - open_water, -60, height * F(0.55) * smoothstep(0, 3500, t - 7200 + open_water) - 4)

    ground = Ground(terrain, view, (2600, 9, 500), 1200, 40000, shape=shores)
    albedo = rgb("#26301f") * (1 + F(0.3) * ground.grain(200, 1.6))[..., None]
    ground.roughen(260, 0.5)
    colour = ground.lit(albedo, sun, rgb("#ff9a5c") * 1.6, rgb("#7d86b4") * 0.45)
    dx, dy, dz = view.directions()
    haze = mix(rgb("#8a84a8") * 0.8, rgb("#ffac70") * 1.0, smoothstep(0.88, 1.0, dx * sun[0] + dz * sun[2])[..., None])
    colour = ground.air(colour, haze, 15000)
    upper = over(sky.radiance(dx, dy, dz), ground, colour)
    light = mirror(view, upper, 5, 0.006, "#141c30", seed=5, tile=70, longest=7, tint=(0.92, 0.9, 0.92))
    return develop(light, view, exposure=0.95, contrast=0.2, seed=42)


def ocean(view, sky, eye, height, tile=160.0, longest=46.0, deep="#0b2b3a", seed=9, wind=(0.35, 1.0), far=9000, near=6,
          foam=0.0, haze=None, distance=9000, glitter=1.0):
    """The open sea: waves as ground, the sky mirrored in each slope."""
    field, sx, sz = waves(seed, wind, 2048, tile, longest)
    terrain = Terrain(field * F(height), tile)
    terrain.slope_x, terrain.slope_z = sx * F(height), sz * F(height)
    ground = Ground(terrain, view, (40, eye, 10), near, far, steps=2200)
    fade = np.clip(F(view.f * 0.6) / ground.t, 0.10, 1)
    mx, mz = ground.slope_x, ground.slope_z
    small = sample(sx, ground.x / F(tile) * 5.3, ground.z / F(tile) * 5.3) * F(height * 0.35)
    small_z = sample(sz, ground.x / F(tile) * 5.3, ground.z / F(tile) * 5.3) * F(height * 0.35)
    nx, nz = (mx + small * glitter) * fade, (mz + small_z * glitter) * fade
    n = 1 / np.sqrt(1 + nx * nx + nz * nz)
    dx, dy, dz = view.directions()
    vx, vy, vz = dx, np.minimum(dy, F(-0.003)), dz
    # The normal is (-nx, 1, -nz) * n.
    dot = (-vx * nx + vy - vz * nz) * n
    dot = np.minimum(dot, F(-0.01))
    rx = vx + 2 * dot * n * nx
    ry = np.abs(vy - 2 * dot * n)
    rz = vz + 2 * dot * n * nz
    reflected = sky.radiance(rx, ry, rz)
    fresnel = F(0.02) + F(0.98) * (1 - np.clip(-dot, 0, 1)) ** 5
    through = rgb(deep) * (1 + F(1.2) * np.clip(ground.height / F(height * 2.5), -0.5, 1))[..., None]
    colour = mix(through, reflected, fresnel[..., None])
    if foam:
        crest = smoothstep(foam, foam + 0.8, ground.height / F(height) + sample(texture(2.0, 5), ground.x / 31, ground.z / 31) * F(0.5))
        spots = smoothstep(-0.2, 1.0, sample(texture(1.4, 6), ground.x / 13, ground.z / 13))
        colour = mix(colour, rgb("#dfe8ea") * 0.85, (crest * spots * F(0.9))[..., None])
    if haze is not None:
        colour = ground.air(colour, haze, distance)
    return ground, colour


def open_sea():
    view = View(1500, 1000, horizon=0.40, lens=0.9)
    sun = direction(-34, 26)
    sky = Sky("#2f6db4", "#c7dcea", "#fff2dc", sun, glow_power=0.4)
    sky.add_clouds("#ffffff", "#8ea2ba", scale=0.13, cover=0.55, soft=0.4, seed=37, slices=10, thick=0.03)
    ground, colour = ocean(view, sky, 7.5, 0.62, deep="#07384a", foam=1.7, haze=rgb("#b5cbdb"), distance=12000)
    light = over(sky.radiance(*view.directions()), ground, colour)
    return develop(light, view, exposure=1.0, contrast=0.25, seed=43)


def sunset_sea():
    view = View(1600, 1000, horizon=0.48, lens=1.1)
    sun = direction(-7, 3.2)
    sky = Sky("#2c4a80", "#ffb070", "#ff7a3c", sun, sun_power=30, glow_power=1.0, fall=2.1, glow_width=10)
    sky.add_clouds("#ff9d74", "#553c58", scale=0.09, cover=0.50, soft=0.45, seed=48, slices=10, thick=0.03, stretch=2.0, silver=1.6, haze=0.045)
    ground, colour = ocean(view, sky, 3.2, 0.22, tile=110, longest=24, deep="#0a1c30", seed=12, haze=rgb("#e79a6c") * 0.8, distance=14000)
    light = over(sky.radiance(*view.directions()), ground, colour)
    return develop(light, view, exposure=0.95, contrast=0.2, seed=44)


def low_tide():
    view = View(1000, 1333, horizon=0.34, lens=0.85)
    sun = direction(6, 9)
    sky = Sky("#5a86b8", "#f6d8bc", "#ffc38a", sun, sun_power=12, glow_power=0.6, fall=2.2, glow_width=8)
    sky.add_clouds("#ffeede", "#9f95a8", scale=0.12, cover=0.56, soft=0.5, seed=57, slices=10, thick=0.03, stretch=1.5)
    size = 1024
    grid = ((np.arange(size) + 0.5) / size).astype(F)
    bend = fbm(size, 4, 5, 3) * F(0.9) + fbm(size, 12, 3, 5) * F(0.35)
    ripple = np.sin(2 * np.pi * (grid[:, None] * 46 + bend * 1.6))
    ripple = np.sign(ripple) * np.abs(ripple) ** F(0.8) * F(0.012)
    pools = unit(fbm(size, 5, 5, 31)) * F(0.16)
    terrain = Terrain((ripple * smoothstep(0.03, 0.09, pools) + pools).astype(F), 13.0)

    def flat(x, z, t, height):
        return np.maximum(height, F(0.074) + 0 * t)

    ground = Ground(terrain, view, (3, 1.45, 2), 0.8, 4000, shape=flat, steps=2200)
    wet = smoothstep(0.0765, 0.0745, ground.height)
    ground.roughen(1.2, 0.06)
    sand = rgb("#9a7a5a") * (1 + F(0.10) * ground.grain(0.7, 0.8, 3) + F(0.06) * ground.grain(5, 2.2, 4))[..., None]
    damp = smoothstep(0.115, 0.078, ground.height)
    sand = sand * (1 - F(0.45) * damp)[..., None]
    dry = ground.lit(sand, sun, rgb("#ffcfa0") * 2.6, rgb("#93a8d0") * 0.55, ground.shadow(sun, 0.6, steps=16), occlusion=0.1)
    dx, dy, dz = view.directions()
    sx = sample(texture(2.4, 8), ground.x / 3, ground.z / 3) * F(0.012)
    reflected = sky.radiance(dx + sx, np.abs(dy) + np.abs(sx), dz)
    fresnel = (F(0.02) + F(0.98) * (1 - np.clip(-dy, 0, 1)) ** 5)[..., None]
    water = dry * F(0.35) + reflected * np.clip(fresnel * 1.15, 0, 1)
    film = reflected * fresnel * (damp * F(0.35))[..., None]
    colour = mix(dry + film, water, wet[..., None])
    # Beyond the sand flats lies the sea with its line of surf.
    sea = smoothstep(70, 90, ground.t + sample(texture(2.4, 2), ground.x / 60, ground.t / 400) * 14)
    surf = smoothstep(0.2, 1.0, np.sin(ground.t / 16 + sample(texture(2.6, 4), ground.x / 140, ground.t / 200) * 2.2)) * smoothstep(260, 90, ground.t)
    blue = mix(rgb("#4b6e86") * 0.7, reflected, F(0.5)) + rgb("#ffffff") * (surf * F(0.65))[..., None]
    colour = mix(colour, blue, sea[..., None])
    colour = ground.air(colour, rgb("#e9cdb8") * 0.9, 2600)
    return develop(over(sky.radiance(dx, dy, dz), ground, colour), view, exposure=0.95, contrast=0.2, seed=45)


def still_water():
    view = View(1600, 1000, horizon=0.60, lens=1.0)
    light = misty_forest(view, view.horizon, seed=31, fog="#c9d3d6", glow="#ffe2bd", glow_at=(0.63, 0.30), tall=0.40, bottom=False)
    light = mirror(view, light, 4, 0.0016, "#1a2626", seed=35, tile=40, longest=4, tint=(0.9, 0.93, 0.93))
    band = np.exp(-((view.v * view.h - view.horizon) / F(view.h * 0.045)) ** 2) * (F(0.55) + F(0.2) * sample(texture(2.8, 7), view.u * F(0.4), view.v * F(1.6) + 0 * view.u))
    light = mix(light, np.broadcast_to(rgb("#d5dcdc") * 0.95, light.shape), np.clip(band, 0, 1)[..., None])
    return develop(light, view, exposure=0.95, contrast=0.2, saturation=1.0, seed=46)


SCENES = {
    "By the Water/Mirror Lake.jpg": mirror_lake,
    "By the Water/Abend am See.jpg": evening_lake,
    "By the Water/Open Sea.jpg": open_sea,
    "By the Water/Last Light.jpg": sunset_sea,
    "By the Water/Low Tide.jpg": low_tide,
    "By the Water/Still Water.jpg": still_water,
}
