"""Open country: hills, dunes, canyon, storm."""

import functools

import numpy as np

from camera import View, develop, direction, rgb
from noise import F, blur, fbm, gradient_noise, mix, smoothstep, warp
from scenes_mountains import cloud_shadows, unit
from sky import Sky
from terrain import Ground, Terrain, over


def spring_hills():
    view = View(1500, 1000, horizon=0.40, lens=1.1)
    sun = direction(-62, 30)
    sky = Sky("#2f74c4", "#cfe4f2", "#fff2da", sun, glow_power=0.3)
    sky.add_clouds("#ffffff", "#9fb2c8", scale=0.15, cover=0.50, soft=0.3, seed=23, slices=12, thick=0.035)
    field = unit(warp(fbm(1024, 5, 7, 41, gain=0.38), 0.04, 9))
    terrain = Terrain(field * F(330), 5200)
    ground = Ground(terrain, view, (900, 345, 300), 130, 16000)
    n = ground.grain(1600, 2.8, 3)
    # Fields: cells of a coarse lattice, bent, each with a crop of its own.
    bend = ground.grain(3000, 3.2, 31) * 90
    gx = np.floor((ground.x + bend) / 260).astype(np.int64)
    gz = np.floor((ground.z + bend * F(0.7)) / 340).astype(np.int64)
    crop = ((gx * 7919 + gz * 104729 + gx * gz * 31) % 11).astype(np.int32)
    colours = np.stack([rgb(c) for c in ("#5f8f2f", "#6fa035", "#87a93a", "#4c7d2b", "#d9c22c", "#78a63c",
                                         "#9ab04a", "#5b8a33", "#a58a58", "#679634", "#cdb92f")])
    albedo = colours[crop]
    rows = np.sin((ground.x * F(0.8) + ground.z * F(0.6)) / 3.2) * np.clip(500 / ground.t, 0, 1) * F(0.10)
    edge_x = np.abs((ground.x + bend) / 260 - gx - F(0.5))
    edge_z = np.abs((ground.z + bend * F(0.7)) / 340 - gz - F(0.5))
    hedge = smoothstep(0.478, 0.492, np.maximum(edge_x, edge_z)) * smoothstep(-0.8, 0.2, ground.grain(130, 1.4, 12))
    wood = smoothstep(0.75, 0.95, n + ground.grain(160, 1.6, 13) * F(0.25))
    trees = np.maximum(hedge, wood)
    leaf = rgb("#2c4a1c") * (1 + F(0.35) * ground.grain(60, 1.2, 17))[..., None]
    albedo = mix(albedo * (1 + rows + ground.grain(90, 1.8, 18) * F(0.09))[..., None], leaf, trees[..., None])
    ground.roughen(60, 0.10)
    shade = ground.shadow(sun, 1500) * cloud_shadows(5200, 6, dark=0.35)(ground) * (1 - F(0.25) * trees)
    colour = ground.lit(albedo, sun, rgb("#fff0d2") * 2.7, rgb("#8db2e2") * 0.6, shade, occlusion=0.1)
    colour = ground.air(colour, rgb("#b4cde4"), 8500)
    return develop(over(sky.radiance(*view.directions()), ground, colour), view, exposure=0.95, contrast=0.15, saturation=0.88, seed=21)


@functools.lru_cache(maxsize=None)
def dune_field(seed, size=2048):
    """Long crests across the wind, steep on the lee side, with ripples added by the scene."""
    grid = ((np.arange(size) + 0.5) / size).astype(F)
    bend = fbm(size, 3, 4, seed) * F(0.10) + fbm(size, 8, 3, seed + 4) * F(0.018)
    phase = (grid[None, :] * 7 + bend * 7 + grid[:, None] * 3) % 1
    # A gentle rise and a short steep fall.
    rise, fall = phase / F(0.74), np.clip((1 - phase) / F(0.26), 0, 1)
    wave = np.where(phase < F(0.74), rise ** F(1.6), fall ** F(1.25))
    sizes = 0.45 + 0.75 * unit(fbm(size, 3, 3, seed + 8))
    small = unit(fbm(size, 10, 3, seed + 12))
    return Terrain((wave * sizes * 150 + small * 26).astype(F), 3600)


def dunes():
    view = View(1600, 1067, horizon=0.30, lens=1.1)
    sun = direction(-78, 13)
    sky = Sky("#4f86c6", "#f5d9b4", "#ffc98a", sun, glow_power=0.4, fall=2.2)
    terrain = dune_field(5)
    ground = Ground(terrain, view, (700, 205, 400), 60, 20000, steps=1700)
    near = np.clip(260 / ground.t, 0, 1)
    wind = (ground.z * F(0.95) + ground.x * F(0.31) + ground.grain(300, 2.8, 3) * 9) / 1.5
    ripple = np.cos(wind * 2 * np.pi / 1.6) * F(0.16) * near * smoothstep(0.72, 0.93, ground.steep)
    ground.slope_z = ground.slope_z + ripple * F(0.95)
    ground.slope_x = ground.slope_x + ripple * F(0.31)
    ground.roughen(30, 0.03)
    albedo = rgb("#c9986a") * (1 + F(0.05) * ground.grain(700, 2.2, 4))[..., None]
    colour = ground.lit(albedo, sun, rgb("#ffc794") * 3.0, rgb("#7d94cc") * 0.5, ground.shadow(sun, 700, steps=70, soft=0.008), occlusion=0.05)
    colour = ground.air(colour, rgb("#f0cfa8") * 0.95, 11000)
    return develop(over(sky.radiance(*view.directions()), ground, colour), view, exposure=1.05, contrast=0.25, seed=22)


def canyon():
    view = View(1500, 1000, horizon=0.30, lens=0.95)
    sun = direction(-95, 17)
    sky = Sky("#3c6eb4", "#f0d2b6", "#ffd0a0", sun, glow_power=0.35, fall=2.2)
    sky.add_clouds("#ffe9d6", "#b59aa0", scale=0.09, cover=0.42, soft=0.6, seed=61, slices=6, thick=0.03, stretch=1.8, opacity=0.8)
    size = 2048
    river = np.abs(warp(gradient_noise(size, 3, 71), 0.05, 72)) * F(2.2)
    side = np.abs(warp(fbm(size, 8, 6, 75), 0.03, 73))
    plateau = np.clip(river * F(1.3) + side * F(0.55), 0, 1)
    raw = smoothstep(0.02, 0.62, plateau) * 0.92 + fbm(size, 16, 6, 79) * F(0.010) + unit(fbm(size, 4, 4, 80)) * F(0.08)
    # Hard layers stand as walls, soft ones lie as slopes.
    steps = 9.0
    level = raw * F(steps)
    base = np.floor(level)
    raw = (base + smoothstep(0.25, 0.62, level - base)) / F(steps) * F(0.8) + raw * F(0.2)
    terrain = Terrain(raw * F(1250), 15000)
    ground = Ground(terrain, view, (12000, 1550, 9000), 400, 40000, steps=1800)
    ground.roughen(300, 0.22)
    calm = 1 - F(0.8) * smoothstep(0.72, 0.90, ground.steep)
    ground.slope_x, ground.slope_z = ground.slope_x * calm, ground.slope_z * calm
    band = ground.height / F(38) + ground.grain(2500, 3.0, 3) * F(0.7)
    stripes = np.sin(band * 2.1) * F(0.5) + np.sin(band * 5.3 + 1) * F(0.3) + ground.grain(600, 2.4, 4) * F(0.25)
    wall = mix(rgb("#85492f"), rgb("#cfa07a"), (F(0.5) + F(0.42) * stripes)[..., None])
    flat = smoothstep(0.72, 0.90, ground.steep)
    scrub = mix(F(0.35), smoothstep(0.2, 1.6, ground.grain(420, 1.9, 5)), np.clip(700 / ground.t, 0, 1))
    top = mix(rgb("#a9825c"), rgb("#666a45"), (scrub * F(0.55))[..., None])
    albedo = mix(wall, top, flat[..., None])
    colour = ground.lit(albedo, sun, rgb("#ffc796") * 2.9, rgb("#7f93c8") * 0.55, ground.shadow(sun, 5000), occlusion=0.15)
    colour = ground.air(colour, rgb("#c3b2c0") * 0.85, 24000)
    return develop(over(sky.radiance(*view.directions()), ground, colour), view, exposure=1.1, contrast=0.25, seed=23)


def bolt(canvas, x, y, x1, y1, rng, power, depth=0):
    """One stroke of lightning by repeated displacement of midpoints, with side branches."""
    points = [(x, y), (x1, y1)]
    sway = np.hypot(x1 - x, y1 - y) * 0.18
    for _ in range(8):
        nxt = [points[0]]
        for (ax, ay), (bx, by) in zip(points, points[1:]):
            nxt += [((ax + bx) / 2 + rng.normal(0, sway), (ay + by) / 2 + rng.normal(0, sway * 0.35)), (bx, by)]
        points = nxt
        sway *= 0.54
    h, w = canvas.shape
    for (ax, ay), (bx, by) in zip(points, points[1:]):
        n = int(max(abs(bx - ax), abs(by - ay)) * 2) + 1
        px = np.linspace(ax, bx, n).astype(int)
        py = np.linspace(ay, by, n).astype(int)
        ok = (px >= 0) & (px < w) & (py >= 0) & (py < h)
        np.add.at(canvas, (py[ok], px[ok]), power / 2)
    if depth < 3:
        for i in rng.integers(20, len(points) - 20, 3 - depth // 2):
            ax, ay = points[i]
            length = np.hypot(x1 - x, y1 - y) * rng.uniform(0.12, 0.32)
            angle = rng.uniform(0.3, 1.0) * rng.choice((-1, 1))
            bolt(canvas, ax, ay, ax + np.sin(angle) * length, ay + np.cos(angle) * length, rng, power * 0.42, depth + 1)


def storm():
    view = View(1500, 1000, horizon=0.76, lens=0.75)
    sun = direction(40, 6)
    sky = Sky("#20283a", "#7d7f86", "#d8a070", sun, glow_power=0.35, fall=2.8)
    sky.add_clouds("#8b93a6", "#141a26", scale=0.10, cover=0.90, soft=0.8, seed=83, slices=8, thick=0.008, haze=0.06, silver=0.2, beta=3.0)
    dx, dy, dz = view.directions()
    light = sky.radiance(dx, dy, dz)
    far = smoothstep(0.16, 0.0, dy)[..., None]
    light = mix(light, light * rgb("#ffd9ae") * 1.5 + rgb("#e0a878") * 0.12, far)
    rng = np.random.default_rng(18)
    stroke = np.zeros((view.h, view.w), F)
    bolt(stroke, view.w * 0.34, view.h * 0.10, view.w * 0.27, view.horizon, rng, 3.0)
    core = blur(stroke, view.w / 3000) * F(0.8)
    glow = blur(stroke, view.w / 160) * F(1.0) + blur(stroke, view.w / 12) * F(2.6)
    light = light + core[..., None] * rgb("#f3eeff") * 3 + glow[..., None] * rgb("#a9a4ea") * (0.5 + light * 3)
    rain = smoothstep(0.1, 0.9, np.sin(view.u * 3.1 + 1.1) * np.ones_like(view.v)) * smoothstep(0.22, 0.02, dy) * smoothstep(0.5, 0.3, view.u * view.h / view.w)
    light = mix(light, np.broadcast_to(rgb("#4e5666") * 0.8, light.shape), (rain * F(0.45))[..., None])
    terrain = Terrain(unit(fbm(1024, 6, 6, 88, gain=0.42)) * F(26), 2600)
    ground = Ground(terrain, view, (300, 33, 300), 7, 14000)
    rows = ground.grain(16, 1.0, 5) * np.clip(90 / ground.t, 0.15, 1)
    wheat = mix(rgb("#8f7a3c"), rgb("#c3a456"), np.clip(F(0.5) + F(0.3) * rows + F(0.2) * ground.grain(420, 2.6, 6), 0, 1)[..., None])
    ground.roughen(9, 0.35)
    track = smoothstep(2.1, 1.2, np.abs(np.abs(ground.x - 306 - ground.z * F(0.05) + 16) - 2.2)) * F(0.5)
    wheat = mix(wheat, rgb("#4d402a"), track[..., None])
    field = ground.lit(wheat, direction(60, 24), rgb("#ffd6a2") * 0.75, rgb("#8d98b4") * 0.35, occlusion=0.05)
    field = ground.air(field, rgb("#6d6f78") * 0.9, 9000)
    return develop(over(light, ground, field), view, exposure=1.15, contrast=0.25, saturation=1.0, seed=24)


SCENES = {
    "Frühling über den Hügeln.jpg": spring_hills,
    "Dunes at Dawn.jpg": dunes,
    "Canyon Light.jpg": canyon,
    "Storm over the Wheat.jpg": storm,
}
