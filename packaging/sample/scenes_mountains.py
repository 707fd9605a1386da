"""Mountains."""

import functools

import numpy as np

from camera import View, develop, direction, rgb
from noise import F, eroded, mix, ridged, sample, smoothstep, spectral, warp
from sky import Sky
from terrain import Ground, Terrain, over


def unit(field):
    return (field - field.min()) / (field.max() - field.min())


@functools.lru_cache(maxsize=None)
def alps(seed, height=2300, tile=16000, size=2048, sharp=1.0):
    """Crests over smooth valleys."""
    crests = unit(warp(ridged(size, 4, 9, seed, gain=0.46, sharpness=0.6), 0.035, seed + 3))
    ground = unit(eroded(size, 4, 10, seed + 11, gain=0.5, strength=0.9))
    field = unit(crests ** F(sharp) * (F(0.6) + F(0.6) * ground) + ground * F(0.3))
    return Terrain(field * F(height), tile)


@functools.lru_cache(maxsize=None)
def foothills(seed, height=600, tile=14000, size=2048):
    """Rounded ridges with spurs."""
    ground = unit(warp(eroded(size, 5, 10, seed, gain=0.46, strength=0.5), 0.03, seed + 5))
    crests = unit(ridged(size, 5, 8, seed + 2, gain=0.42, sharpness=0.2))
    return Terrain(unit(ground + crests * F(0.8)) * F(height), tile)


def snow_and_rock(ground, line, rock="#5b5049", snow="#eef2f6", seed=3, steep=(0.52, 0.70)):
    """Snow on what is flat and high, rock where it is steep."""
    n = ground.grain(900, 2.6, seed) * F(0.10) + ground.grain(220, 2.2, seed + 1) * F(0.04)
    level = smoothstep(line - 450, line + 350, ground.height + n * 1200)
    flat = smoothstep(steep[0], steep[1], ground.steep + n * F(0.7))
    cover = np.clip(level * flat * F(1.1), 0, 1)
    strata = np.sin(ground.height / F(26) + ground.grain(700, 2.6, seed + 2) * 3) * F(0.08)
    stone = rgb(rock) * (1 + strata + n * F(1.4))[..., None]
    return mix(stone, rgb(snow), cover[..., None]), cover


def roughen_rock(ground, cover, amount=0.4):
    """Rock is rough, snow is smooth."""
    sx, sz = ground.slope_x, ground.slope_z
    ground.roughen(420, amount)
    ground.roughen(110, amount * 0.8, seed=8)
    keep = 1 - F(0.85) * cover
    ground.slope_x = mix(sx, ground.slope_x, keep)
    ground.slope_z = mix(sz, ground.slope_z, keep)


def snowy(view, sky, sun, terrain, eye, line, sunlight, skylight, haze, distance, near=900, far=26000, yaw=0.0,
          rock="#5b5049", steep=(0.52, 0.70), seed=3, low=None, clouds=None):
    ground = Ground(terrain, view, eye, near, far, yaw)
    albedo, cover = snow_and_rock(ground, line, rock, steep=steep, seed=seed)
    roughen_rock(ground, cover)
    shade = ground.shadow(sun, 7000)
    if clouds is not None:
        shade = shade * clouds(ground)
    colour = ground.lit(albedo, sun, sunlight, skylight, shade, occlusion=0.18)
    colour = ground.air(colour, haze, distance, low=low)
    return over(sky.radiance(*view.directions()), ground, colour)


def cloud_shadows(metres, seed, low=-0.3, high=0.6, dark=0.25):
    def shade(ground):
        return mix(F(dark), F(1), smoothstep(low, high, ground.grain(metres, 3.2, seed)))
    return shade


def alpenglow():
    view = View(1500, 1000, horizon=0.46, lens=1.5)
    sun = direction(-104, 5)
    sky = Sky("#2d5288", "#d8aeb0", "#ff9a6a", sun, glow_power=0.2, fall=2.0, glow_width=2)
    sky.add_clouds("#ffb9a0", "#77709a", scale=0.07, cover=0.40, soft=0.8, seed=12, stretch=2.2, slices=5,
                   thick=0.06, opacity=0.5, turn=0.5)
    light = snowy(view, sky, sun, alps(21), (5200, 2050, 1200), 1000, rgb("#ff9a6c") * 3.4,
                  rgb("#6f86c0") * 0.62, rgb("#9a93b8") * 0.75, 30000)
    return develop(light, view, exposure=1.2, saturation=1.02, contrast=0.25, seed=1)


def first_snow():
    view = View(1500, 1000, horizon=0.40, lens=1.1)
    sun = direction(60, 32)
    sky = Sky("#1f56a8", "#b9d2ea", "#fff2dc", sun, glow_power=0.25)
    sky.add_clouds("#ffffff", "#8fa3bd", scale=0.16, cover=0.47, soft=0.3, seed=31, slices=12, thick=0.04)
    light = snowy(view, sky, sun, alps(35, 2100), (900, 2150, 3000), 900, rgb("#fff1de") * 2.5,
                  rgb("#86a9dc") * 0.75, rgb("#a9c4e2"), 34000, near=600, steep=(0.46, 0.62), rock="#4c4a4a",
                  clouds=cloud_shadows(9000, 4))
    return develop(light, view, exposure=0.95, contrast=0.2, seed=2)


def blue_ridges():
    view = View(1600, 1000, horizon=0.42, lens=2.0)
    sun = direction(14, 7)
    sky = Sky("#6f98cc", "#f2dcc4", "#ffb468", sun, glow_power=0.7, fall=2.6, glow_width=30)
    ground = Ground(foothills(7, 900), view, (3000, 1150, 500), 1200, 60000, steps=1800)
    trees = ground.grain(300, 1.6) * F(0.25)
    albedo = rgb("#2c3d24") * (1 + trees)[..., None]
    ground.roughen(260, 0.6)
    colour = ground.lit(albedo, sun, rgb("#ffcf96") * 2.6, rgb("#8698b8") * 0.5, ground.shadow(sun, 5000))
    dx, dy, dz = view.directions()
    haze = mix(rgb("#86a0c6"), rgb("#ffd2a0") * 1.05, smoothstep(0.93, 1.012, dx * sun[0] + dz * sun[2])[..., None])
    colour = ground.air(colour, haze, 14000, low=(260, 2.6))
    return develop(over(sky.radiance(dx, dy, dz), ground, colour), view, exposure=0.95, contrast=0.2, seed=3)


def high_pass():
    view = View(900, 1300, horizon=0.36, lens=0.95)
    sun = direction(-70, 26)
    sky = Sky("#2a5fae", "#c4d9ec", "#fff0d8", sun, glow_power=0.25)
    sky.add_clouds("#ffffff", "#93a6bf", scale=0.14, cover=0.52, soft=0.35, seed=44, slices=12, thick=0.04)
    terrain = alps(52, 2200)
    ground = Ground(terrain, view, (4000, 1750, 9000), 500, 26000)
    albedo, cover = snow_and_rock(ground, 1500, "#6a625a", seed=6)
    n = ground.grain(500, 2.4, 11)
    meadow = smoothstep(0.62, 0.85, ground.steep + n * F(0.06)) * smoothstep(1450, 950, ground.height + n * 60)
    grass = mix(rgb("#5c6b2c"), rgb("#39511f"), smoothstep(-1, 1, n)[..., None])
    albedo = mix(albedo, grass, (meadow * (1 - cover))[..., None])
    roughen_rock(ground, np.maximum(cover, meadow * F(0.6)))
    shade = ground.shadow(sun, 7000) * cloud_shadows(8000, 9)(ground)
    colour = ground.lit(albedo, sun, rgb("#ffeeda") * 3.0, rgb("#88a8d8") * 0.6, shade, occlusion=0.2)
    colour = ground.air(colour, rgb("#a4c0e0") * 0.95, 26000)
    return develop(over(sky.radiance(*view.directions()), ground, colour), view, exposure=1.05, contrast=0.2, seed=4)


def above_the_clouds():
    view = View(1600, 1000, horizon=0.40, lens=1.2)
    sun = direction(15, 6)
    sky = Sky("#3b6cae", "#ffd9a8", "#ffa860", sun, sun_power=25, glow_power=1.0, fall=2.6, glow_width=14)
    sky.add_clouds("#ffe3c8", "#b08f9c", scale=0.05, cover=0.34, soft=0.9, seed=6, stretch=3, slices=4, thick=0.05,
                   opacity=0.4)
    terrain = alps(64, 2500)
    cloud = spectral(1024, 3.1, 77)
    fine = spectral(1024, 2.5, 78)

    def top(x, z):
        n = sample(cloud, x / F(15000), z / F(15000)) * F(110) + np.abs(sample(fine, x / F(7000), z / F(7000))) * F(30)
        return n + F(1480)

    eye = (5000, 2420, 8000)
    peaks = Ground(terrain, view, eye, 1000, 70000, steps=1600)
    albedo, cover = snow_and_rock(peaks, 1300, "#4c4650")
    roughen_rock(peaks, cover)
    dx, dy, dz = view.directions()
    haze = mix(rgb("#a9b6d8"), rgb("#ffca90"), smoothstep(0.93, 1.0, dx * sun[0] + dz * sun[2])[..., None])
    rock = peaks.lit(albedo, sun, rgb("#ffbf86") * 3.6, rgb("#7f97cc") * 0.6, peaks.shadow(sun, 7000))
    rock = peaks.air(rock, haze, 36000)
    size = 1024
    grid = (np.arange(size, dtype=F) * F(30000 / size))
    field = np.concatenate([top(grid[None, :], row[:, None]) for row in np.array_split(grid, 4)])
    bank_terrain = Terrain(field, 30000)
    bank = Ground(bank_terrain, view, eye, 400, 90000, steps=1600)
    white = np.full((view.h, view.w, 3), 0.9, F)
    bank.roughen(2600, 0.12, beta=3.2)
    glow = bank.lit(white, sun, rgb("#ffb27a") * 3.0, rgb("#93a9dc") * 0.72, occlusion=0.12, bounce=0.0)
    glow = glow + (rgb("#ffb884") * 0.35) * smoothstep(0.7, 1.0, dx * sun[0] + dz * sun[2])[..., None]
    glow = bank.air(glow, haze, 42000)
    # Rock sinks into the cloud softly.
    sunk = smoothstep(-30, 90, peaks.height - top(peaks.x, peaks.z))
    hidden = np.where(peaks.seen & (peaks.t < np.where(bank.seen, bank.t + 900, np.inf)), sunk, 0)
    back = over(sky.radiance(dx, dy, dz), bank, glow)
    light = mix(back, rock, hidden[..., None])
    return develop(light, view, exposure=0.9, contrast=0.15, seed=5)


def winter_valley():
    view = View(1400, 933, horizon=0.34, lens=1.3)
    sun = direction(-50, 20)
    sky = Sky("#5c86bd", "#dbe6f0", "#fff0dd", sun, glow_power=0.3)
    sky.add_clouds("#fdfdff", "#aab7c8", scale=0.10, cover=0.55, soft=0.7, seed=19, slices=8, thick=0.04, stretch=1.6)
    terrain = foothills(91, 1500)
    ground = Ground(terrain, view, (6500, 1450, 2500), 1200, 40000)
    snow = np.broadcast_to(rgb("#eaf0f6"), (view.h, view.w, 3))
    n = ground.grain(2600, 2.8, 4)
    fine = ground.grain(420, 1.5, 14)
    forest = smoothstep(0.1, 0.35, n + smoothstep(0.93, 0.78, ground.steep) * 1.1 - 0.5
                        - smoothstep(900, 1250, ground.height)) * smoothstep(-2.6, 1.4, fine)
    albedo = mix(snow, rgb("#20302e"), (forest * F(0.92))[..., None])
    ground.roughen(180, 0.25)
    colour = ground.lit(albedo, sun, rgb("#ffdfba") * 2.6, rgb("#7fa2da") * 0.5, ground.shadow(sun, 6000))
    colour = ground.air(colour, rgb("#c3d5ea") * 0.85, 22000, low=(300, 1.6))
    return develop(over(sky.radiance(*view.directions()), ground, colour), view, exposure=0.8, contrast=0.35, seed=6)


def foothills_small():
    view = View(320, 240, horizon=0.42, lens=1.4, fine=3)
    sun = direction(-64, 24)
    sky = Sky("#3a70b8", "#cfe0ee", "#fff0d8", sun, glow_power=0.3)
    sky.add_clouds("#ffffff", "#9db0c6", scale=0.12, cover=0.5, soft=0.4, seed=15, slices=8, thick=0.03)
    light = snowy(view, sky, sun, alps(88, 1900), (2000, 1200, 4000), 1150, rgb("#fff0dc") * 2.6,
                  rgb("#86a6d8") * 0.65, rgb("#a8c2e0"), 24000)
    return develop(light, view, exposure=1.0, grain=0.004, contrast=0.2, seed=7)


SCENES = {
    "Mountains/Alpenglow.jpg": alpenglow,
    "Mountains/First Snow.jpg": first_snow,
    "Mountains/Blue Ridges.jpg": blue_ridges,
    "Mountains/High Pass.jpg": high_pass,
    "Mountains/Above the Clouds.jpg": above_the_clouds,
    "Mountains/Winter Valley.jpg": winter_valley,
    "Mountains/Scouting Shot.bmp": foothills_small,
}
