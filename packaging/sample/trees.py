"""Silhouettes of conifers."""

import numpy as np
from PIL import Image, ImageDraw

from camera import rgb
from noise import F, blur, fbm, mix, sample, spectral


def conifer(draw, x, foot, height, rng, fill=255):
    """A spruce: a thin stem and whorls of drooping boughs, each a ragged wedge."""
    width = height * rng.uniform(0.15, 0.21)
    lean = rng.normal(0, 0.012) * height
    draw.polygon([(x - height * 0.010, foot), (x + height * 0.010, foot), (x + lean + 0.4, foot - height), (x + lean - 0.4, foot - height)], fill=fill)
    whorls = int(np.clip(height / 4.2, 16, 74))
    for i in range(whorls):
        a = (i + rng.uniform(-0.3, 0.3)) / whorls
        if a > 0.93 or a < 0.0:
            continue
        level = foot - height * (1 - a * 0.97) if i else foot - height * 0.99
        reach = width * (a ** 0.85) * rng.uniform(0.75, 1.15) + height * 0.006
        cx = x + lean * (1 - a)
        for side in (-1, 1):
            r = reach * rng.uniform(0.50, 1.22)
            droop = r * rng.uniform(0.15, 0.62)
            thick = height / whorls * rng.uniform(1.3, 2.6)
            tip = (cx + side * r, level + droop)
            points = [(cx, level - thick * 0.5), (cx + side * r * 0.55, level + droop * 0.35 - thick * 0.1), tip]
            for k in np.linspace(0.86, 0.12, 5):
                points.append((cx + side * r * k, level + droop * k + thick * rng.uniform(0.15, 0.85)))
            draw.polygon(points, fill=fill)


def forest_mask(width, height, ground, tall, spacing, seed, variation=0.35, x_range=(0.0, 1.0)):
    """Coverage 0..1 of a row of trees; ground(x) gives the row of the soil, tall the mean height in pixels."""
    rng = np.random.default_rng(seed)
    image = Image.new("L", (width, height), 0)
    draw = ImageDraw.Draw(image)
    x = x_range[0] * width - tall * 0.1
    soil = []
    while x < x_range[1] * width + tall * 0.1:
        h = tall * np.clip(rng.lognormal(-0.06, variation), 0.3, 1.7)
        conifer(draw, x, ground(x) + tall * 0.04, h, rng)
        x += spacing * tall * rng.uniform(0.3, 1.7)
    for x in range(0, width + 8, 8):
        soil.append((x, ground(x)))
    draw.polygon(soil + [(width + 8, height + 4), (0, height + 4)], fill=255)
    return (np.asarray(image).astype(F) / F(255))


def misty_forest(view, soil, seed, fog, glow, glow_at, tall=0.5, layers=7, dark="#0d1a17", bottom=True):
    """Rows of spruces that fade into fog; soil: the row of the nearest ground, in pixels of the rendering."""
    fog, glow, dark = rgb(fog), rgb(glow), rgb(dark)
    w, h = view.w, view.h
    away = np.sqrt((view.u - F(glow_at[0] * w / h)) ** 2 + ((view.v - F(glow_at[1])) * F(1.2)) ** 2)
    shine = np.exp(-(away / F(0.55)) ** 1.3)
    air = mix(fog * F(0.85), glow * F(1.15), shine[..., None])
    light = air * (F(1.05) - F(0.25) * view.v)[..., None]
    hills = fbm(512, 3, 5, seed)
    drift = spectral(512, 2.8, seed + 2)
    for k in range(layers):
        near = k / (layers - 1)
        row = hills[(k * 61) % 512]
        foot = soil - h * (0.22 * (1 - near)) if not bottom else soil - h * 0.42 * (1 - near) ** 1.2
        rise = h * (0.10 * (1 - near * 0.8))
        ground = lambda x, row=row, foot=foot, rise=rise: foot + rise * row[int(np.clip(x / w, 0, 1) * 180)]
        mask = forest_mask(w, h, ground, h * tall * (0.18 + 0.82 * near ** 1.3), 0.13 + 0.05 * near, seed + 10 + k, variation=0.28)
        if not bottom:
            mask = mask * (np.arange(h)[:, None] <= soil)
        mask = blur(mask, max(0.0, 1.2 * (1 - near)) * w / 1600)
        clear = 0.07 + 0.88 * near ** 1.7
        colour = mix(air, np.broadcast_to(dark, light.shape), F(clear))
        light = mix(light, colour, mask[..., None])
        # Fog gathers about the feet of each row.
        n = sample(drift, view.u * F(0.35) + F(k * 0.17), view.v * F(0.8) + F(k * 0.29))
        low = np.exp(-((view.v * h - F(foot + h * 0.02)) / F(h * (0.05 + 0.07 * near))) ** 2) * (F(0.62) + F(0.3) * n) * F(1 - 0.75 * near)
        light = mix(light, air, np.clip(low, 0, 1)[..., None])
    return light
