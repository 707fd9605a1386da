"""Forests and close-ups: leaves, grass, wood, stones, rain."""

import numpy as np
from PIL import Image, ImageDraw

from camera import View, develop, rgb
from noise import F, blur, disc_blur, mix, sample, sample_clamped, smoothstep, spectral
from sky import texture
from trees import misty_forest


def misty_morning():
    view = View(1000, 1333)
    light = misty_forest(view, view.h * 1.02, 11, "#b9c6c8", "#fff0d2", (0.66, 0.20), tall=0.62)
    # Shafts of light from the sun behind the trees.
    ax, ay = view.u - F(0.66 * view.w / view.h), view.v - F(0.10)
    angle = np.arctan2(ax, ay + F(0.25))
    shafts = np.clip(sample(texture(1.9, 3), angle * F(0.9) + F(0.2), angle * 0 + F(0.4)) * F(0.5) + F(0.25), 0, 1)
    shafts = shafts * np.exp(-np.sqrt(ax * ax + ay * ay) * F(1.8)) * smoothstep(-0.1, 0.15, ay)
    light = light + shafts[..., None] * rgb("#ffe4b4") * 0.16
    return develop(light, view, exposure=0.85, contrast=0.25, saturation=1.05, seed=81)


def snowfall():
    view = View(1400, 933)
    light = misty_forest(view, view.h * 1.0, 51, "#aab6c4", "#dfe6ee", (0.4, 0.25), tall=0.60, dark="#1b2630")
    rng = np.random.default_rng(5)
    h, w = view.h, view.w
    for count, radius, power in ((1500, 1.3, 0.55), (320, 3.2, 0.34), (60, 8.0, 0.20), (14, 17.0, 0.10)):
        flakes = Image.new("L", (w, h), 0)
        d = ImageDraw.Draw(flakes)
        for _ in range(count):
            x, y = rng.uniform(0, w), rng.uniform(0, h)
            r = radius * w / 1600 * rng.uniform(0.6, 1.3)
            d.ellipse([x - r, y - r * 1.25, x + r, y + r * 1.25], fill=int(rng.uniform(90, 255)))
        mask = blur(np.asarray(flakes).astype(F) / 255, radius * 0.28 * w / 1600)
        light = mix(light, np.broadcast_to(rgb("#f2f5f8"), light.shape), np.clip(mask * F(power * 1.5), 0, 1)[..., None])
    return develop(light, view, exposure=0.95, contrast=0.2, saturation=0.95, seed=82)


def bokeh(view, colours, count, radius, seed, area=(0, 0, 1, 1), power=0.5):
    """Discs of light out of focus, with the bright rim that lenses give them."""
    rng = np.random.default_rng(seed)
    out = np.zeros((view.h, view.w, 3), F)
    for _ in range(count):
        r = radius * view.h * rng.uniform(0.55, 1.25)
        x = rng.uniform(area[0], area[2]) * view.w
        y = rng.uniform(area[1], area[3]) * view.h
        x0, x1 = max(0, int(x - r - 3)), min(view.w, int(x + r + 4))
        y0, y1 = max(0, int(y - r - 3)), min(view.h, int(y + r + 4))
        if x1 <= x0 or y1 <= y0:
            continue
        d = np.sqrt((np.arange(y0, y1)[:, None] - y) ** 2 + (np.arange(x0, x1)[None, :] - x) ** 2) / r
        edge = max(0.02, 1.6 / r)
        disc = smoothstep(1 + edge, 1 - edge, d) * (0.72 + 0.28 * smoothstep(0.6, 0.97, d))
        colour = rgb(colours[rng.integers(len(colours))]) * rng.uniform(0.35, 1.0)
        out[y0:y1, x0:x1] += (disc * power)[..., None].astype(F) * colour
    return out


def drops(view, light, back, seed, count, sizes, flat=0.8, lamp=(-0.4, -0.5), glint=2.2, keep=None, stretch=0.15):
    """Water drops: each shows what lies behind it upside down, with a glint and a dark rim."""
    rng = np.random.default_rng(seed)
    out = light.copy()
    placed = []
    tries = 0
    while len(placed) < count and tries < count * 30:
        tries += 1
        r = min(sizes[1], sizes[0] * (1 + rng.pareto(2.1))) * view.h
        x, y = rng.uniform(0, view.w), rng.uniform(0, view.h)
        if keep is not None and not keep(x / view.w, y / view.h):
            continue
        if any((x - px) ** 2 + (y - py) ** 2 < (r + pr) ** 2 * 0.9 for px, py, pr in placed):
            continue
        placed.append((x, y, r))
    for x, y, r in sorted(placed, key=lambda p: p[2]):
        tall = r * (1 + rng.uniform(0, stretch))
        x0, x1 = max(0, int(x - r * 1.6)), min(view.w, int(x + r * 1.6) + 1)
        y0, y1 = max(0, int(y - tall * 1.6)), min(view.h, int(y + tall * 1.6) + 1)
        if x1 - x0 < 2 or y1 - y0 < 2:
            continue
        wobble = rng.normal(0, 0.05, 4)
        dx = (np.arange(x0, x1)[None, :] - x) / r
        dy = (np.arange(y0, y1)[:, None] - y) / tall
        angle = np.arctan2(dy, dx)
        d = np.sqrt(dx * dx + dy * dy) * (1 + wobble[0] * np.cos(angle * 2) + wobble[1] * np.sin(angle * 3))
        inside = smoothstep(1.0, 1 - max(0.05, 2.0 / r), d)[..., None]
        shadow_d = np.sqrt((dx + lamp[0] * 0.35) ** 2 + (dy + lamp[1] * 0.35) ** 2)
        shadow = smoothstep(1.35, 0.7, shadow_d)[..., None] * F(0.42) * F(flat)
        patch = out[y0:y1, x0:x1] * (1 - shadow * (1 - inside))
        # A lens turns the scene over.
        reach = 3.2
        bend = 1 + 1.2 * d ** 2
        sx = x / view.w * back.shape[1] - dx * bend * r * reach / view.w * back.shape[1]
        sy = y / view.h * back.shape[0] - dy * bend * tall * reach / view.h * back.shape[0]
        seen = sample_clamped(back, sx, sy)
        rim = 1 - F(0.72) * smoothstep(0.62, 1.0, d)
        far_side = smoothstep(0.15, 0.95, d) * np.clip(-(dx * lamp[0] + dy * lamp[1]) / np.maximum(d, 1e-3), 0, 1)
        seen = seen * (rim + F(0.9) * far_side * flat)[..., None]
        gx, gy = dx - lamp[0] * 0.9, dy - lamp[1] * 0.9
        spark = np.exp(-((gx / 0.16) ** 2 + (gy / 0.12) ** 2)) + F(0.25) * np.exp(-(((dx + lamp[0] * 1.1) / 0.12) ** 2 + ((dy + lamp[1] * 1.1) / 0.12) ** 2))
        seen = seen + (spark * glint)[..., None]
        out[y0:y1, x0:x1] = mix(patch, seen, inside)
    return out.astype(F)


def morning_dew():
    view = View(1500, 1000)
    x, y = view.u + 0 * view.v, view.v + 0 * view.u
    # The leaf: a midrib from the lower left to the upper right, veins to both sides, cells between them.
    c, s = np.cos(-0.42), np.sin(-0.42)
    a = (x - F(0.75)) * F(c) - (y - F(0.5)) * F(s)
    b = (x - F(0.75)) * F(s) + (y - F(0.5)) * F(c) - F(0.03)
    b = b + F(0.03) * np.sin(a * F(2.2))
    n = sample(texture(2.6, 3), x * F(0.3), y * F(0.3))
    side = np.abs(b)
    run = a - side * F(0.85) - side * side * F(0.4) + n * F(0.006)
    spacing = F(0.155)
    shift = np.where(b > 0, 0, spacing * F(0.43))
    q = ((run + shift) / spacing) % 1
    vein = np.exp(-((np.minimum(q, 1 - q) * spacing) / F(0.0042)) ** 2) * smoothstep(0.95, 0.1, side)
    rib = np.exp(-(b / F(0.011)) ** 2)
    fine_q = ((b * F(0.6) + run * F(0.5) + n * F(0.010)) / F(0.026)) % 1
    fine_p = ((b * F(0.9) - run * F(0.7) + n * F(0.012)) / F(0.031)) % 1
    web = np.maximum(np.exp(-(np.minimum(fine_q, 1 - fine_q) / F(0.10)) ** 2), np.exp(-(np.minimum(fine_p, 1 - fine_p) / F(0.09)) ** 2))
    bulge = (F(0.5) - np.abs(q - F(0.5))) * F(2)
    height = bulge ** F(0.6) * F(0.020) + sample(texture(2.2, 5), x * F(0.9), y * F(0.9)) * F(0.0011) - vein * F(0.008) + rib * F(0.014) - web * F(0.0010)
    gy, gx = np.gradient(height * F(view.h))
    shade = np.clip(F(0.62) + F(0.85) * gx * F(0.6) + F(0.85) * gy * F(0.8), 0.1, 1.8)
    green = mix(rgb("#1f5a16"), rgb("#5c9a24"), np.clip(F(0.45) + F(0.22) * n + F(0.25) * bulge - F(0.3) * (x - F(0.75)), 0, 1)[..., None])
    green = mix(green, rgb("#b4d05a"), np.clip(rib * F(0.75) + vein * F(0.5) + web * F(0.12), 0, 1)[..., None])
    light = green * shade[..., None] * (F(1.15) - F(0.5) * (x - F(0.4)) ** 2)[..., None]
    sheen = np.exp(-((gx + F(0.25)) ** 2 + (gy + F(0.35)) ** 2) / F(0.03)) * F(0.16)
    light = light + sheen[..., None] * rgb("#dcecff")
    back = bokeh(view, ("#d8f0a0", "#88c040", "#4f8f28"), 40, 0.10, 4, power=0.2) + mix(rgb("#cfe6ff") * 0.7, rgb("#2d6a1a"), smoothstep(0.1, 0.6, y)[..., None])
    light = drops(view, light, back * 0.6 + light * 0.3, 7, 150, (0.010, 0.105), lamp=(-0.42, -0.50), glint=1.5, stretch=0.12)
    # Sharp in a band only, like a lens close to its subject.
    focus = np.abs(y - F(0.52) + (x - F(0.75)) * F(0.22))
    soft1, soft2 = disc_blur(light, view.h / 190), disc_blur(light, view.h / 60)
    light = mix(light, soft1, smoothstep(0.16, 0.30, focus)[..., None])
    light = mix(light, soft2, smoothstep(0.28, 0.52, focus)[..., None])
    return develop(light, view, exposure=1.25, contrast=0.25, seed=83)


def autumn():
    view = View(1500, 1000)
    x, y = view.u + 0 * view.v, view.v + 0 * view.u
    n = sample(texture(3.2, 3), x * F(0.25), y * F(0.25))
    light = mix(rgb("#5a3210"), rgb("#c07820"), np.clip(F(0.5) + F(0.25) * n + F(0.4) * (F(0.5) - y), 0, 1)[..., None]) * 0.55
    light = light + bokeh(view, ("#ffb030", "#ff7a1c", "#ffd878", "#d84818", "#9aa83a"), 120, 0.055, 3, power=0.34)
    light = light + bokeh(view, ("#fff2c0", "#ffc860"), 34, 0.075, 8, area=(0.05, 0, 0.95, 0.6), power=0.5)
    rng = np.random.default_rng(12)
    h, w = view.h, view.w

    def leaf(cx, cy, size, turn, tone, focus):
        nonlocal light
        points = []
        lobes = ((0.0, 1.0), (0.62, 0.86), (1.28, 0.62), (2.1, 0.36))
        outline = [(0.0, 1.0), (0.10, 0.80), (0.20, 0.72), (0.30, 0.50), (0.42, 0.62), (0.56, 0.80), (0.64, 0.92), (0.72, 0.74), (0.86, 0.62), (1.0, 0.40),
                   (1.14, 0.50), (1.28, 0.66), (1.40, 0.50), (1.66, 0.40), (1.9, 0.30), (2.2, 0.36), (2.5, 0.24), (2.85, 0.12)]
        full = [(t, r) for t, r in outline] + [(2 * np.pi - t, r) for t, r in reversed(outline[1:])]
        for t, r in full:
            r = r * (1 + rng.normal(0, 0.025))
            points.append((cx + size * h * r * np.sin(t + turn), cy - size * h * r * np.cos(t + turn)))
        image = Image.new("L", (w, h), 0)
        d = ImageDraw.Draw(image)
        d.polygon(points, fill=255)
        stalk = [(cx, cy), (cx - size * h * 0.5 * np.sin(turn + 0.15), cy + size * h * 0.5 * np.cos(turn + 0.15))]
        d.line(stalk, fill=255, width=max(2, int(size * h * 0.022)))
        veins = Image.new("L", (w, h), 0)
        dv = ImageDraw.Draw(veins)
        for t, r in lobes + tuple((2 * np.pi - t, r) for t, r in lobes[1:]):
            tip = (cx + size * h * r * 0.93 * np.sin(t + turn), cy - size * h * r * 0.93 * np.cos(t + turn))
            dv.line([(cx, cy), tip], fill=255, width=max(1, int(size * h * 0.011)))
            for k in (0.35, 0.5, 0.65, 0.8):
                bx, by = cx + (tip[0] - cx) * k, cy + (tip[1] - cy) * k
                for side in (-0.7, 0.7):
                    reach = size * h * 0.20 * (1 - k * 0.7)
                    dv.line([(bx, by), (bx + reach * np.sin(t + turn + side), by - reach * np.cos(t + turn + side))], fill=150, width=max(1, int(size * h * 0.005)))
        mask = np.asarray(image).astype(F) / 255
        lines = np.asarray(veins).astype(F) / 255
        mottle = sample(texture(2.3, 20), x * F(1.1), y * F(1.1))
        centre = np.exp(-(((x * h - cx) ** 2 + (y * h - cy) ** 2) / (size * h * 0.75) ** 2)).astype(F)
        colour = mix(rgb(tone[0]), rgb(tone[1]), np.clip(centre + F(0.16) * mottle, 0, 1)[..., None])
        glow = F(0.85) + F(0.35) * (F(0.55) - y) + F(0.10) * mottle
        colour = colour * glow[..., None] * (1 - F(0.38) * lines)[..., None] + (blur(lines, 1.5) - lines * F(0.5)).clip(0, 1)[..., None] * F(0.05)
        if focus > 0.3:
            mask = disc_blur(mask, focus * h / 900)
            colour = disc_blur(colour, focus * h / 900)
        light = mix(light, colour, np.clip(mask, 0, 1)[..., None])

    leaf(0.13 * w, 0.16 * h, 0.20, 2.4, ("#c05a18", "#e8a030"), 16)
    leaf(0.88 * w, 0.74 * h, 0.24, -0.7, ("#a83a14", "#e07820"), 13)
    leaf(0.30 * w, 0.90 * h, 0.20, 0.9, ("#c88a20", "#f0c850"), 9)
    leaf(0.53 * w, 0.53 * h, 0.38, 0.32, ("#b82a10", "#f59a28"), 0)
    return develop(light, view, exposure=1.25, contrast=0.15, bloom=0.12, seed=84)


def golden_grass():
    view = View(1600, 1067)
    h, w = view.h, view.w
    x, y = view.u + 0 * view.v, view.v + 0 * view.u
    sun = (0.70, 0.36)
    r = np.sqrt((x - F(sun[0] * w / h)) ** 2 + (y - F(sun[1])) ** 2)
    light = mix(rgb("#f2b066"), rgb("#7a5a2a"), smoothstep(0.25, 0.85, y)[..., None]) * 0.62
    light = light + np.exp(-(r / F(0.30)))[..., None] * rgb("#ffd89a") * 1.3 + np.exp(-(r / F(0.045)) ** 2)[..., None] * 2.5
    hill = smoothstep(-0.006, 0.006, y - F(0.50) - F(0.03) * np.sin(x * 2.3 + 1) - F(0.012) * np.sin(x * 7))
    light = mix(light, light * rgb("#b08a58") * 0.8, blur(hill.astype(F), h / 60)[..., None])
    rng = np.random.default_rng(3)
    # Rows of blades, the middle row in focus.
    for row, (count, tall, soft, dark) in enumerate(((900, 0.30, 9, 0.45), (600, 0.40, 4.0, 0.40), (300, 0.58, 0, 0.30), (26, 0.72, 15, 0.15))):
        image = Image.new("L", (w, h), 0)
        d = ImageDraw.Draw(image)
        heads = Image.new("L", (w, h), 0)
        dh = ImageDraw.Draw(heads)
        for _ in range(count):
            x0 = rng.uniform(-0.05, 1.05) * w
            top = tall * h * rng.uniform(0.55, 1.15)
            lean = rng.normal(0.10, 0.16) * top
            base = h * 1.02
            pts = [(x0 + lean * t ** 2.0, base - top * t * (1 - 0.10 * t)) for t in np.linspace(0, 1, 14)]
            width = h * (0.0042 if row < 3 else 0.010) * rng.uniform(0.6, 1.2)
            for i in range(13):
                d.line([pts[i], pts[i + 1]], fill=int(rng.uniform(150, 255)), width=max(1, int(width * (1 - i / 15))))
            if rng.uniform() < 0.5 and row < 3:
                (ax, ay), (bx, by) = pts[-2], pts[-1]
                ux, uy = bx - ax, by - ay
                norm = max(1e-3, np.hypot(ux, uy))
                ux, uy = ux / norm, uy / norm
                for k in range(15):
                    t = k / 15
                    px, py = bx + ux * t * h * 0.055 * (tall + 0.5), by + uy * t * h * 0.055 * (tall + 0.5)
                    size = h * 0.0024 * (1 - 0.75 * abs(t - 0.35)) * (tall + 0.55)
                    for side in (-1, 1):
                        ex, ey = px + side * uy * size, py - side * ux * size
                        dh.ellipse([ex - size * 0.8, ey - size * 0.8, ex + size * 0.8, ey + size * 0.8], fill=255)
                        dh.line([(ex, ey), (ex + ux * size * 9 + side * uy * size * 2.5, ey + uy * size * 9 - side * ux * size * 2.5)], fill=120, width=1)
        blade = np.asarray(image).astype(F) / 255
        ear = np.asarray(heads).astype(F) / 255
        if soft:
            blade, ear = disc_blur(blade, soft * h / 1067), disc_blur(ear, soft * h / 1067)
        glow = np.exp(-(r / F(0.55)))[..., None]
        green = mix(rgb("#3c3a14"), rgb("#b98a3a"), np.clip(F(1.35) - y * F(1.15), 0, 1)[..., None]) * (1 - F(dark * 0.7))
        green = green * (F(0.55) + F(1.8) * glow)
        gold = rgb("#e0a04a") * (F(0.35) + F(1.7) * glow)
        light = mix(light, green, np.clip(blade, 0, 1)[..., None] * F(0.92))
        light = mix(light, gold, np.clip(ear, 0, 1)[..., None] * F(0.95))
        light = light + np.exp(-(r / F(0.35)))[..., None] * rgb("#ffcf8a") * F(0.10)
    light = light + bokeh(view, ("#ffe0a0", "#ffc870"), 26, 0.020, 9, area=(0.3, 0.2, 1, 0.75), power=0.22)
    return develop(light, view, exposure=0.95, contrast=0.2, bloom=0.16, seed=85)


def old_wood():
    view = View(1400, 933)
    x, y = view.u + 0 * view.v, view.v + 0 * view.u
    light = np.zeros((view.h, view.w, 3), F)
    rng = np.random.default_rng(6)
    plank = np.floor(y * F(4.2) + F(0.35)).astype(int)
    inside = (y * F(4.2) + F(0.35)) % 1
    height = np.zeros_like(x)
    tone = np.zeros_like(x)
    for p in range(plank.min(), plank.max() + 1):
        m = plank == p
        ox, oy = F(rng.uniform(0, 9)), F(rng.uniform(0, 9))
        px, py = x[m] + ox, inside[m]
        knots = [(rng.uniform(0.1, 1.4), rng.uniform(0.25, 0.75), rng.uniform(0.05, 0.10)) for _ in range(rng.integers(1, 3))]
        wave = sample(texture(3.0, 3), px * F(0.22), py * F(0.06) + oy) * F(0.10)
        f = py + wave + F(rng.uniform(-0.15, 0.15)) * px
        dark = np.zeros_like(px)
        for kx, ky, size in knots:
            ex, ey = (px - ox - F(kx)) / F(2.3), (py - F(ky)) / F(1.6)
            d = np.sqrt(ex * ex + ey * ey)
            f = f + F(0.22) * np.exp(-(d / F(size)) ** 1.2) * np.sign(ey + F(1e-6))
            dark = dark + np.exp(-(d / F(size * 0.34)) ** 2)
            ring = np.exp(-(d / F(size)) ** 2)
            f = f + ring * d * F(1.5)
        rings = f * F(13)
        saw = rings % 1
        late = smoothstep(0.35, 0.95, saw) * smoothstep(1.0, 0.95, saw)
        fibre = sample(texture(1.7, 4), px * F(0.10), py * F(0.55) + oy + wave * 2)
        crack_field = sample(texture(2.2, 5), px * F(0.07), py * F(0.35) + oy)
        crack = smoothstep(0.055, 0.0, np.abs(crack_field - F(0.9))) * smoothstep(-0.2, 0.6, sample(texture(2.6, 6), px * F(0.3), py * F(0.05) + oy))
        height[m] = late * F(0.5) + fibre * F(0.16) - crack * F(1.6) - smoothstep(0.035, 0.0, py) * 4 - smoothstep(0.965, 1.0, py) * 4 - dark * F(0.3)
        tone[m] = F(0.5) + F(0.13) * late + F(0.09) * fibre - F(0.55) * crack - F(0.40) * dark.clip(0, 1) + F(rng.uniform(-0.08, 0.08))
        tone[m] *= smoothstep(0.0, 0.03, py) * smoothstep(1.0, 0.972, py) * F(0.85) + F(0.15)
    gy, gx = np.gradient(blur(height, view.h / 1400))
    shade = np.clip(1 + (gy * F(1.1) + gx * F(0.4)) * F(0.9), 0.25, 1.9)
    stain = sample(texture(2.9, 7), x * F(0.3), y * F(0.5))
    colour = mix(rgb("#3f3026"), rgb("#b99a78"), np.clip(tone, 0, 1)[..., None])
    colour = mix(colour, rgb("#8d918e") * tone[..., None], np.clip(F(0.38) + F(0.2) * stain, 0, 0.8)[..., None])
    fall = F(1.15) - F(0.45) * x + F(0.1) * y
    light = colour * (shade * fall)[..., None] * rgb("#fff0da")
    return develop(light, view, exposure=1.35, contrast=0.25, seed=86)


def river_stones():
    view = View(1400, 933)
    h, w = view.h, view.w
    rng = np.random.default_rng(14)
    top = np.full((h, w), -1.0, F)
    albedo = np.zeros((h, w, 3), F)
    speckle = spectral(1024, 1.4, 3)
    veins = spectral(1024, 2.4, 4)
    tones = ("#6d6a66", "#8c8478", "#4a4b50", "#a39a8c", "#7a5a4a", "#5a6468", "#b4ad9f", "#3c3a3a", "#8f6f58", "#74808a")
    stones = []
    for size, count in ((0.025, 2600), (0.055, 620), (0.10, 150), (0.16, 34)):
        for _ in range(count):
            stones.append((size * rng.uniform(0.75, 1.25), rng.uniform(-0.05, 1.05) * w, rng.uniform(-0.05, 1.05) * h))
    for size, cx, cy in stones:
        a, b = size * h * rng.uniform(0.9, 1.3), size * h * rng.uniform(0.65, 0.95)
        turn = rng.normal(0.2, 0.7)
        reach = int(max(a, b) * 1.1)
        x0, x1, y0, y1 = max(0, int(cx) - reach), min(w, int(cx) + reach), max(0, int(cy) - reach), min(h, int(cy) + reach)
        if x1 - x0 < 3 or y1 - y0 < 3:
            continue
        dx, dy = np.arange(x0, x1)[None, :] - cx, np.arange(y0, y1)[:, None] - cy
        u = (dx * np.cos(turn) + dy * np.sin(turn)) / a
        v = (dy * np.cos(turn) - dx * np.sin(turn)) / b
        angle = np.arctan2(v, u)
        lump = 1 + rng.normal(0, 0.05) * np.cos(2 * angle + 1) + rng.normal(0, 0.05) * np.cos(3 * angle + rng.uniform(0, 6)) + rng.normal(0, 0.025) * np.cos(5 * angle)
        power = rng.uniform(2.0, 2.6)
        d = (np.abs(u * lump) ** power + np.abs(v * lump) ** power)
        dome = np.where(d < 1, np.clip(1 - d, 0, 1) ** 0.52, -2) * b * rng.uniform(0.40, 0.58)
        bed = rng.uniform(0.0, 0.10) * h * (size / 0.16) ** 0.5 * 0.6
        z = np.where(d < 1, dome + bed, -9).astype(F)
        win = z > top[y0:y1, x0:x1]
        top[y0:y1, x0:x1] = np.where(win, z, top[y0:y1, x0:x1])
        tone = rgb(tones[rng.integers(len(tones))]) * rng.uniform(0.6, 1.2)
        ou, ov = rng.uniform(0, 5, 2)
        grain = sample(speckle, (u * a / h * 1.3 + ou).astype(F), (v * b / h * 1.3 + ov).astype(F))
        band = np.sin((u * rng.uniform(2, 6) + v * rng.uniform(-3, 3)) * 3 + 1.6 * sample(veins, (u * a / h + ov).astype(F), (v * b / h + ou).astype(F)))
        seam = np.exp(-(sample(veins, (u * a / h * 0.8 + ou).astype(F), (v * b / h * 0.8 + ou).astype(F)) / 0.06) ** 2) * (rng.uniform() < 0.28)
        c = tone * (1 + rng.uniform(0.05, 0.22) * grain + rng.uniform(0, 0.14) * band)[..., None]
        c = mix(c, np.broadcast_to(rgb("#d8d2c8"), c.shape), (seam * 0.7)[..., None])
        albedo[y0:y1, x0:x1] = np.where(win[..., None], c, albedo[y0:y1, x0:x1])
    height = blur(top, h / 1300)
    gy, gx = np.gradient(height)
    n = 1 / np.sqrt(gx * gx + gy * gy + 1)
    lamp = np.array((-0.55, -0.50, 0.67))
    diffuse = np.clip((-gx * lamp[0] - gy * lamp[1] + lamp[2]) * n, 0, 1)
    occlusion = np.clip(1 + (height - blur(height, h / 36)) / F(h * 0.035), 0.10, 1.15) * np.clip(1 + (height - blur(height, h / 140)) / F(h * 0.014), 0.35, 1.1)
    shadow = np.ones((h, w), F)
    for k in range(1, 30):
        step = k * h / 420
        moved = np.roll(np.roll(height, int(-lamp[0] * step * 1.0), 1), int(-lamp[1] * step * 1.0), 0)
        shadow = np.minimum(shadow, np.clip(1 - (moved - height - F(step * 0.9)) / F(h * 0.006), 0.12, 1))
    half = np.array((-0.30, -0.27, 0.915))
    wet = smoothstep(0.25, 0.75, view.u / F(w / h) * F(0.6) + view.v * F(0.5) + F(0.16) * sample(texture(2.8, 9), view.u * F(0.3), view.v * F(0.3) + 0 * view.u))
    shine = np.clip((-gx * half[0] - gy * half[1] + half[2]) * n, 0, 1) ** 60
    light = albedo * (1 - F(0.45) * wet)[..., None] * ((diffuse * shadow)[..., None] * rgb("#fff2de") * 2.0 + (occlusion * (F(0.4) + F(0.6) * n))[..., None] * rgb("#9db6d6") * 0.55)
    light = light * np.clip(occlusion, 0.15, 1)[..., None] + (shine * shadow * wet * F(0.9))[..., None]
    return develop(light, view, exposure=1.25, contrast=0.2, seed=87)


def rain_on_the_window():
    view = View(900, 600)
    x, y = view.u + 0 * view.v, view.v + 0 * view.u
    back = mix(rgb("#1c2b4a"), rgb("#4a3a4e"), smoothstep(0.1, 0.9, y)[..., None]) * 0.5
    back = back + bokeh(view, ("#ffb050", "#ff7838", "#ffd890"), 42, 0.060, 3, area=(0, 0.42, 1, 0.95), power=0.62)
    back = back + bokeh(view, ("#60b0ff", "#ff4858", "#70e0a0", "#ffffff"), 22, 0.050, 5, area=(0, 0.25, 1, 0.85), power=0.42)
    light = blur(back, view.h / 160) * 0.92
    mist = F(0.035) * (1 + F(0.4) * sample(texture(2.5, 6), x * F(0.5), y * F(0.5)))
    light = light + mist[..., None] * rgb("#a9bcd8")
    light = drops(view, light, blur(back, view.h / 300), 21, 520, (0.0065, 0.050), flat=0.45, lamp=(0.1, -0.62), glint=0.8, stretch=0.35)
    return develop(light, view, exposure=1.3, bloom=0.10, grain=0.0, contrast=0.15, seed=88)


SCENES = {
    "Misty Morning.jpg": misty_morning,
    "Snowfall.jpg": snowfall,
    "Morning Dew.jpg": morning_dew,
    "October.jpg": autumn,
    "Golden Grass.jpg": golden_grass,
    "Old Wood.jpg": old_wood,
    "River Stones.jpg": river_stones,
    "Rain on the Window.png": rain_on_the_window,
}
