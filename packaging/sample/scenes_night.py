"""Night pictures."""

import numpy as np
from PIL import Image, ImageDraw

from camera import View, develop, direction, rgb
from noise import F, blur, fbm, mix, sample, smoothstep
from scenes_mountains import alps, snow_and_rock
from scenes_water import mirror
from sky import Sky, stars, texture
from terrain import Ground, over
from trees import forest_mask


def milky_way():
    view = View(1000, 1400, horizon=0.90, lens=0.7)
    x, y = view.u * np.ones_like(view.v), view.v * np.ones_like(view.u)
    low = smoothstep(0.30, 0.95, y)[..., None]
    light = mix(rgb("#0a1020") * 0.9, rgb("#23364c") * 1.1, low)
    light = light + rgb("#6a4a3a") * 0.35 * smoothstep(0.62, 0.95, y)[..., None] ** 2
    # The band runs from the lower left to the upper right; dark lanes of dust cut it.
    along = x * F(0.50) - (y - F(0.5)) * F(0.866)
    across = (x - F(0.36)) * F(0.866) + (y - F(0.5)) * F(0.50)
    n = sample(texture(2.8, 5), x * F(0.5), y * F(0.5))
    fine = sample(texture(2.1, 6), x * F(0.9), y * F(0.9))
    core = np.exp(-((along + F(0.10)) / F(0.42)) ** 2)
    width = F(0.10) + F(0.06) * core
    band = np.exp(-(across + n * F(0.012)) ** 2 / (2 * width ** 2)) * (F(0.5) + F(0.75) * core)
    dust = smoothstep(-0.2, 1.2, sample(texture(2.5, 8), along * F(0.55) + 2, across * F(1.1) + n * F(0.02)) * F(0.9) + fine * F(0.35) + F(0.85) - np.abs(across + F(0.012) * n) * F(13))
    clouds = band * (F(0.8) + F(0.25) * n + F(0.18) * fine) * (1 - F(0.78) * dust * band.clip(0, 1))
    warm = np.exp(-(across / F(0.07)) ** 2) * core
    tint = mix(rgb("#8fa0d0"), rgb("#f0c8a0"), np.clip(warm * 1.1, 0, 1)[..., None])
    light = light + tint * np.clip(clouds, 0, None)[..., None] * F(0.36)
    spots = stars(view, 5200, 3, faint=0.7)
    dense = stars(view, 9000, 4, faint=0.16, size=0.7) * np.clip(clouds * 1.6, 0.12, 1.3)[..., None]
    light = light + (spots * 0.9 + dense * 1.2) * smoothstep(1.02, 0.70, y)[..., None]
    ridge = fbm(512, 4, 6, 17)[3]
    h = view.h
    soil = lambda px: h * (0.90 + 0.05 * ridge[int(px / view.w * 200) % 512])
    back = lambda px: h * (0.865 + 0.06 * ridge[(int(px / view.w * 150) + 250) % 512])
    far = forest_mask(view.w, h, back, h * 0.035, 0.20, 5)
    near = forest_mask(view.w, h, soil, h * 0.115, 0.16, 6, variation=0.4)
    light = mix(light, np.broadcast_to(rgb("#121c28") * 0.9, light.shape), far[..., None])
    light = mix(light, np.broadcast_to(rgb("#04060a"), light.shape), near[..., None])
    return develop(light, view, exposure=1.9, bloom=0.10, contrast=0.2, vignette=0.3, sharpen=0.3, grain=0.010, seed=61)


def aurora():
    view = View(1500, 1000, horizon=0.70, lens=0.8)
    dx, dy, dz = view.directions()
    sun = direction(40, -5)
    sky = Sky("#040b1c", "#123248", "#123248", sun, glow_power=0.0, fall=2.0)
    light = sky.clear(dx, dy, dz) + stars(view, 2600, 13, faint=0.6) * smoothstep(0.0, 0.2, dy)[..., None]
    glow = np.zeros_like(light)
    rays, path = texture(2.0, 33), texture(3.2, 34)
    x, y = view.u + 0 * view.v, view.v + 0 * view.u
    # Curtains: folded bands with a sharp lower hem, whose rays fade upwards from green to violet.
    for k, (hem, rise, power, length) in enumerate(((0.60, -0.16, 0.55, 0.20), (0.50, 0.10, 0.8, 0.26), (0.36, -0.22, 1.3, 0.30))):
        one = F(0.13 * k + 0.07)
        fold = sample(path, x * F(0.22) + F(0.37 * k), one + 0 * x) * F(0.10)
        ripple = sample(rays, x * F(0.16) + fold, one + 0 * x)
        line = F(hem) + F(rise) * (x - F(0.75)) + fold + F(0.012) * ripple
        across = x + fold * F(1.2) + F(0.16) * (y - F(0.6)) * (x - F(0.75))
        ray = np.clip(F(0.55) + F(0.40) * sample(rays, across * F(0.42), one + F(0.02) * y), 0.05, 2)
        patch = smoothstep(-0.9, 0.7, sample(path, x * F(0.30) + F(0.6 * k), one + F(0.4) + 0 * x))
        above = line - y
        lift = np.where(above > 0, np.exp(-above / (F(length) * (F(0.35) + F(0.65) * ray))), np.exp(above / F(0.014)))
        amount = lift * (F(0.35) + ray * F(0.65)) * patch * F(power)
        t = np.clip(above / F(length * 1.7), 0, 1)[..., None]
        hue = mix(rgb("#46ff9a"), rgb("#3fc0b8"), np.clip(t * 2, 0, 1))
        glow += amount[..., None] * mix(hue, rgb("#8c46d0"), np.clip(t * 1.6 - 0.4, 0, 1))
    light = light + glow * 0.48 + blur(glow, view.w / 26) * 0.20
    terrain = alps(35, 2100)

    def basin(x, z, t, height):
        return np.where(t < 2400, -40, (height - 500) * smoothstep(0, 4000, t - 2400) * F(0.8))

    ground = Ground(terrain, view, (2200, 12, 4200), 1500, 22000, shape=basin)
    albedo, _ = snow_and_rock(ground, 400, "#4c4f58", steep=(0.45, 0.62))
    rock = ground.lit(albedo, direction(10, 60), rgb("#4fe0a0") * 0.24, rgb("#5a80b0") * 0.11)
    rock = ground.air(rock, rgb("#12303c") * 0.8, 16000)
    upper = over(light, ground, rock)
    light = mirror(view, upper, 4, 0.004, "#03080f", seed=15, tile=50, longest=6, tint=(0.7, 0.75, 0.78))
    return develop(light, view, exposure=1.3, bloom=0.10, contrast=0.15, sharpen=0.3, seed=62)


def skyline(view, base, seed, tallest, count, colour, window, density, spread=(0.0, 1.0), cell=3.4):
    """Buildings as boxes with lit windows: returns the light and the coverage."""
    rng = np.random.default_rng(seed)
    w, h = view.w, view.h
    light = np.zeros((h, w, 3), F)
    cover = np.zeros((h, w), F)
    unit = w / 1800 * cell
    for _ in range(count):
        bw = int(rng.uniform(10, 30) * unit)
        x0 = int((spread[0] + (spread[1] - spread[0]) * rng.uniform(0, 1)) * w - bw / 2)
        peak = np.exp(-((x0 / w - 0.46) / 0.26) ** 2)
        bh = int(tallest * h * (0.16 + 0.84 * rng.beta(1.5, 2.6)) * (0.45 + 0.75 * peak))
        x1, y0, y1 = x0 + bw, int(base - bh), int(base)
        xs, ys = slice(max(0, x0), min(w, x1)), slice(max(0, y0), y1)
        if xs.stop <= xs.start:
            continue
        shade = colour * rng.uniform(0.6, 1.3)
        grade = np.linspace(0.7, 1.5, ys.stop - ys.start)[:, None, None]
        light[ys, xs] = shade * grade
        cover[ys, xs] = 1
        if rng.uniform() < 0.4 and bh > 0.4 * tallest * h:
            mid = (x0 + x1) // 2
            step = slice(max(0, mid - bw // 4), min(w, mid + bw // 4))
            up = int(bh * rng.uniform(0.03, 0.10))
            light[max(0, y0 - up):y0, step] = shade * 0.8
            cover[max(0, y0 - up):y0, step] = 1
            if 0 < mid < w - 1:
                light[max(0, y0 - up * 3):y0, mid:mid + 2] = shade * 0.7
                cover[max(0, y0 - up * 3):y0, mid:mid + 2] = 1
                tip = max(0, y0 - up * 3)
                light[tip:tip + 3, mid - 1:mid + 3] = rgb("#ff3020") * 3
        lively = density * rng.uniform(0.3, 1.5)
        tone = rng.choice(3, p=(0.62, 0.26, 0.12))
        pitch_x, pitch_y = unit * rng.uniform(1.5, 2.3), unit * rng.uniform(1.9, 2.6)
        nx, ny = int(bw / pitch_x), int(bh / pitch_y)
        on = rng.uniform(size=(ny, nx)) < lively
        on |= (rng.uniform(size=(ny, 1)) < lively * 0.22)
        for j, i in zip(*np.nonzero(on)):
            wx, wy = int(x0 + (i + 0.28) * pitch_x), int(y0 + (j + 0.5) * pitch_y)
            if wx < 0 or wx >= w or wy >= y1:
                continue
            c = (rgb("#ffcf88"), rgb("#fff0d2"), rgb("#bcd8ff"))[tone] * window * rng.uniform(0.3, 1.4)
            light[wy:wy + max(1, int(pitch_y * 0.5)), wx:wx + max(1, int(pitch_x * 0.55))] = c
    return light, cover


def city():
    view = View(1600, 1000, horizon=0.62, lens=1.0, fine=2)
    dx, dy, dz = view.directions()
    sky = Sky("#0c1838", "#5a4a6e", "#e08a5c", direction(-20, -2), glow_power=0.55, fall=3.2, glow_width=6)
    sky.add_clouds("#6e5572", "#1c2140", scale=0.10, cover=0.48, soft=0.6, seed=71, slices=6, thick=0.02, stretch=1.8, haze=0.05)
    light = sky.radiance(dx, dy, dz)
    base = view.horizon
    haze = rgb("#5d4a68")
    for seed, tall, count, tone, power, dens, cell, fog in ((1, 0.26, 130, "#2c2c48", 0.9, 0.22, 2.2, 0.55), (2, 0.40, 90, "#1c2036", 1.8, 0.26, 3.0, 0.25), (3, 0.50, 42, "#10142a", 2.8, 0.28, 4.2, 0.05)):
        b, cover = skyline(view, base, seed, tall, count, rgb(tone), power, dens, cell=cell)
        low = np.clip((view.v * view.h - base + view.h * 0.25) / (view.h * 0.25), 0, 1)[..., None]
        b = mix(b, haze * (0.6 + low), F(fog))
        light = mix(light, b, cover[..., None])
    shore = np.zeros((view.h, view.w), F)
    rng = np.random.default_rng(9)
    lamps = np.zeros_like(light)
    for x in np.arange(0, view.w, view.w / 74):
        px, py = int(x + rng.uniform(0, 8)) % view.w, int(base - view.h * rng.uniform(0.004, 0.010))
        lamps[py - 2:py + 2, px:px + 3] = (rgb("#ffb45c"), rgb("#fff0d0"), rgb("#ff9040"))[rng.integers(3)] * 16
    shore[int(base - view.h * 0.006):int(base)] = 1
    light = mix(light, np.broadcast_to(rgb("#0a0c14"), light.shape), shore[..., None]) + lamps + blur(lamps, view.w / 500) * 1.2
    light = mirror(view, light, 9, 0.007, "#050a18", seed=25, tile=60, longest=6, tint=(0.8, 0.82, 0.88), start=base)
    return develop(light, view, exposure=1.25, bloom=0.16, contrast=0.15, sharpen=0.3, seed=63)


def fireworks():
    view = View(1000, 1250, horizon=0.84, lens=1.0)
    dx, dy, dz = view.directions()
    sky = Sky("#060a18", "#1c2238", "#2a2a44", direction(0, -4), glow_power=0.3)
    light = sky.radiance(dx, dy, dz)
    rng = np.random.default_rng(4)
    h, w = view.h, view.w
    sparks = np.zeros((h, w, 3), F)
    smoke = np.zeros((h, w, 3), F)
    bursts = ((0.40, 0.28, 0.27, "#ffb648", "#ff5a2a", 190), (0.72, 0.42, 0.19, "#6fd0ff", "#3f62ff", 150),
              (0.24, 0.52, 0.15, "#ff6fa8", "#d02a6a", 130), (0.60, 0.17, 0.13, "#c9ffb0", "#4fc060", 110))
    for bx, by, size, inner, outer, count in bursts:
        a, b = rgb(inner), rgb(outer)
        for _ in range(count):
            v = rng.normal(size=3)
            v = v / np.linalg.norm(v) * rng.uniform(0.88, 1.05)
            t = np.linspace(0.10, 1, 520)
            path = (1 - np.exp(-2.6 * t)) / (1 - np.exp(-2.6))
            x = bx * w + v[0] * size * h * path
            y = by * h + v[1] * size * h * path + 0.10 * size * h * (2.2 * t) ** 2 * 0.42
            fade = (t ** 0.35) * np.clip(1.25 - t, 0, 1) * rng.uniform(0.5, 1.3)
            flicker = 0.7 + 0.6 * rng.uniform(size=t.size) * (t > 0.6)
            colour = a * (1 - t[:, None]) + b * t[:, None]
            ix, iy = x.astype(int), y.astype(int)
            ok = (ix >= 0) & (ix < w) & (iy >= 0) & (iy < h)
            np.add.at(sparks, (iy[ok], ix[ok]), (colour * (fade * flicker)[:, None])[ok].astype(F) * F(0.9))
        r2 = ((view.u - F(bx * w / h)) ** 2 + (view.v - F(by)) ** 2) / F((size * 0.75) ** 2)
        smoke += (np.exp(-r2 * 1.2) * F(0.10))[..., None] * mix(a, b, F(0.5))
    n = np.clip(F(0.6) + F(0.5) * sample(texture(2.7, 3), view.u * F(0.8), view.v * F(0.8) + 0 * view.u), 0, 2)
    trail = blur(sparks, view.w / 1500) * 3.2
    light = light + trail + blur(sparks, view.w / 140) * 1.6 + smoke * n[..., None]
    for bx, by in ((0.40, 0.28), (0.72, 0.42)):
        line = np.exp(-((view.u - F(bx * w / h) + F(0.012) * np.sin(view.v * 9)) / F(0.0011)) ** 2) * smoothstep(by, 0.84, view.v) * F(0.35)
        light = light + line[..., None] * rgb("#ffcf90")
    b, cover = skyline(view, view.horizon, 12, 0.10, 90, rgb("#0c0e18"), 0.9, 0.16, cell=4.6)
    light = mix(light, b, cover[..., None])
    light = mirror(view, light, 6, 0.012, "#04060e", seed=31, tile=50, longest=6, tint=(0.7, 0.7, 0.75))
    return develop(light, view, exposure=1.5, bloom=0.14, sharpen=0.2, seed=64)


def waxing_moon():
    view = View(760, 760, fine=2)
    x = (view.u - F(0.5)) / F(0.40)
    y = (view.v - F(0.5)) / F(0.40)
    r2 = x * x + y * y
    z = np.sqrt(np.clip(1 - r2, 0, 1))
    lon, lat = np.arctan2(x, np.maximum(z, 1e-4)), np.arcsin(np.clip(y, -1, 1))
    u, v = lon / F(2 * np.pi) + F(0.5), lat / F(np.pi) + F(0.5)
    maria = sample(texture(3.0, 15), u * F(0.9) + F(0.61), v * F(0.45) + F(0.62)) + F(0.25) * sample(texture(2.2, 16), u * 2, v)
    seas = smoothstep(-0.15, 0.75, maria + F(0.35) * (x * F(-0.3) - y * F(0.6)))
    rng = np.random.default_rng(8)
    relief = np.zeros_like(r2)
    rays = np.zeros_like(r2)
    for _ in range(900):
        p = rng.normal(size=3)
        p /= np.linalg.norm(p)
        if p[2] < 0.05:
            continue
        size = 0.010 * rng.pareto(1.9) + 0.008
        size = min(size, 0.085)
        d = np.sqrt((x - p[0]) ** 2 + (y - p[1]) ** 2 + (z - p[2]) ** 2) / F(size)
        near = d < 2.2
        e = d[near]
        relief[near] += F(size) * np.where(e < 1, (e * e - 1) * F(0.8) + F(0.25), F(0.25) * np.exp(-(e - 1) * 3)).astype(F)
    for px, py, power, seed in ((-0.18, 0.66, 1.0, 2), (-0.36, -0.12, 0.6, 3), (-0.62, -0.30, 0.5, 4), (0.52, 0.20, 0.3, 5)):
        ax, ay = x - F(px), y - F(py)
        d = np.sqrt(ax * ax + ay * ay)
        angle = np.arctan2(ay, ax) / F(2 * np.pi)
        streak = np.clip(sample(texture(1.8, 40 + seed), angle + F(0.5), d * F(0.05)) * F(0.6) + F(0.15), 0, 1.2)
        rays += F(power) * (streak * np.exp(-d / F(0.34 * power + 0.1)) + np.exp(-(d / F(0.05)) ** 2) * F(0.9))
    fine = sample(texture(2.0, 17), u * 4, v * 2)
    gy, gx = np.gradient(relief * F(view.h * 0.40))
    light = F(0.92) + (gx * F(0.5) - gy * F(0.35)) * F(0.75)
    albedo = mix(F(0.62), F(0.24), seas) * (1 + F(0.07) * fine) + F(0.26) * np.clip(rays, 0, 1.4)
    edge = np.clip(z, 0, 1) ** F(0.28)
    phase = smoothstep(-0.25, 0.55, x * F(0.82) + z * F(0.75) + y * F(-0.1))
    disc = smoothstep(1.0, 0.985, np.sqrt(r2))
    grey = albedo * np.clip(light, 0.2, 2) * edge * phase * disc
    tint = mix(rgb("#f3ead8"), rgb("#dfe4ee"), seas[..., None])
    return develop(grey[..., None] * tint, view, exposure=1.5, grain=0.0, vignette=0, bloom=0.03, saturation=0.9, contrast=0.1, sharpen=0.6, seed=65)


def lit_windows():
    view = View(480, 360, fine=3)
    h, w = view.h, view.w
    rng = np.random.default_rng(17)
    n = sample(texture(2.2, 9), view.u * F(1.0), view.v * F(1.0) + 0 * view.u)
    brick_y = (view.v * 62) % 1
    brick_x = (view.u * 26 + (np.floor(view.v * 62) % 2) * F(0.5)) % 1
    joint = np.maximum(smoothstep(0.88, 0.96, brick_y), smoothstep(0.94, 0.98, brick_x))
    wall = mix(rgb("#2b2430"), rgb("#3a3036"), (F(0.5) + F(0.25) * n)[..., None]) * (1 - F(0.45) * joint)[..., None] * 0.55
    light = wall * (1 - F(0.35) * view.v)[..., None]
    for row in range(3):
        for column in range(4):
            x0 = (0.095 + column * 0.232) * w
            y0 = (0.075 + row * 0.318) * h
            bw, bh = 0.115 * w, 0.205 * h
            image = Image.new("L", (w, h), 0)
            ImageDraw.Draw(image).rectangle([x0, y0, x0 + bw, y0 + bh], fill=255)
            pane = np.asarray(image).astype(F) / 255
            frame = Image.new("L", (w, h), 0)
            d = ImageDraw.Draw(frame)
            t = w * 0.006
            d.rectangle([x0 - t * 1.6, y0 - t * 1.6, x0 + bw + t * 1.6, y0 + bh + t * 1.6], fill=255)
            sill = Image.new("L", (w, h), 0)
            ImageDraw.Draw(sill).rectangle([x0 - t * 3, y0 + bh + t * 1.6, x0 + bw + t * 3, y0 + bh + t * 4], fill=255)
            bars = Image.new("L", (w, h), 0)
            d = ImageDraw.Draw(bars)
            d.rectangle([x0 + bw / 2 - t * 0.7, y0, x0 + bw / 2 + t * 0.7, y0 + bh], fill=255)
            d.rectangle([x0, y0 + bh * 0.34, x0 + bw, y0 + bh * 0.34 + t], fill=255)
            f = np.asarray(frame).astype(F)[..., None] / 255
            s = np.asarray(sill).astype(F)[..., None] / 255
            light = mix(light, np.broadcast_to(rgb("#6a6058") * 0.28, light.shape), f)
            light = mix(light, np.broadcast_to(rgb("#8a8078") * 0.30, light.shape), s)
            lit = rng.uniform() < 0.6
            xx, yy = (view.u * h - x0) / bw, (view.v * h - y0) / bh
            if lit:
                warm = (rgb("#ffb454"), rgb("#ffd08a"), rgb("#ff9a48"), rgb("#ffe2b0"))[rng.integers(4)]
                inside = warm * rng.uniform(0.7, 1.5) * (F(0.5) + F(0.7) * np.exp(-((xx - F(rng.uniform(0.3, 0.7))) ** 2 * 3 + (yy - F(0.25)) ** 2 * 3)))[..., None]
                curtain = np.clip(smoothstep(0.26, 0.16, xx) + smoothstep(0.74, 0.84, xx), 0, 1) * F(0.55)
                folds = F(0.8) + F(0.25) * np.sin(xx * 70)
                inside = inside * (1 - curtain * folds)[..., None]
                if rng.uniform() < 0.5:
                    pot = np.exp(-((xx - F(0.35)) / F(0.16)) ** 2 - ((yy - F(0.9)) / F(0.22)) ** 2) + F(0.25) * sample(texture(1.6, 30 + row * 4 + column), xx * F(0.2), yy * F(0.2))
                    inside = mix(inside, np.broadcast_to(rgb("#1c1a10") * 0.4, inside.shape), smoothstep(0.45, 0.6, pot)[..., None])
            else:
                inside = np.broadcast_to(mix(rgb("#10141e"), rgb("#39465c"), np.clip(F(0.9) - yy * F(0.7) + xx * F(0.2), 0, 1)[..., None] ** 2) * 0.35, light.shape)
            light = mix(light, inside.astype(F), pane[..., None])
            b = np.asarray(bars).astype(F)[..., None] / 255 * pane[..., None]
            light = mix(light, np.broadcast_to(rgb("#54483e") * 0.25, light.shape), b)
            if lit:
                halo = blur(pane, w / 40) * (1 - f[..., 0])
                light = light + halo[..., None] * warm * 0.16
    return develop(light, view, exposure=1.7, bloom=0.12, grain=0, contrast=0.15, vignette=0.4, sharpen=0.3, seed=66)


SCENES = {
    "Night/Milky Way.jpg": milky_way,
    "Night/Aurora.jpg": aurora,
    "Night/City Lights.jpg": city,
    "Night/Midnight.jpg": fireworks,
    "Night/Waxing Moon.png": waxing_moon,
    "Night/Lit Windows.gif": lit_windows,
}
