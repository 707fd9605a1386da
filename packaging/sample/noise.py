"""Noise fields and blurs on float32 arrays. Everything is seeded: the same call gives the same field."""

import numpy as np

F = np.float32


def smoothstep(low, high, x):
    t = np.clip((x - low) / (high - low), 0, 1).astype(F)
    return t * t * (3 - 2 * t)


def mix(a, b, t):
    return a + (b - a) * t


def spectral(size, beta, seed, low_cut=0):
    """Tileable field of unit deviation whose power falls with frequency ** -beta."""
    rng = np.random.default_rng(seed)
    fy = np.fft.fftfreq(size)[:, None] * size
    fx = np.fft.rfftfreq(size)[None, :] * size
    f = np.sqrt(fx * fx + fy * fy)
    f[0, 0] = 1
    amplitude = f ** (-beta / 2)
    amplitude[f < low_cut] = 0
    amplitude[0, 0] = 0
    phase = rng.uniform(0, 2 * np.pi, f.shape)
    field = np.fft.irfft2(amplitude * np.exp(1j * phase), s=(size, size))
    return (field / field.std()).astype(F)


def sample(texture, u, v):
    """Bilinear look-up in a tileable texture; u and v count tiles."""
    rows, columns = texture.shape[:2]
    x = (u * columns).astype(F)
    y = (v * rows).astype(F)
    x0 = np.floor(x).astype(np.int32)
    y0 = np.floor(y).astype(np.int32)
    fx = x - x0
    fy = y - y0
    x0 %= columns
    y0 %= rows
    x1 = x0 + 1
    x1[x1 == columns] = 0
    y1 = y0 + 1
    y1[y1 == rows] = 0
    flat = texture.reshape(rows * columns, -1)
    if flat.shape[1] == 1:
        flat = flat[:, 0]
    else:
        fx = fx[..., None]
        fy = fy[..., None]
    y0 *= columns
    y1 *= columns
    top = flat[y0 + x0] * (1 - fx) + flat[y0 + x1] * fx
    bottom = flat[y1 + x0] * (1 - fx) + flat[y1 + x1] * fx
    return top + (bottom - top) * fy


def sample_clamped(image, x, y):
    """Bilinear look-up at pixel positions; what lies outside takes the border's value."""
    rows, columns = image.shape[:2]
    x = np.clip(x, 0, columns - 1.001).astype(F)
    y = np.clip(y, 0, rows - 1.001).astype(F)
    x0 = x.astype(np.int32)
    y0 = y.astype(np.int32)
    fx = (x - x0)[..., None] if image.ndim == 3 else x - x0
    fy = (y - y0)[..., None] if image.ndim == 3 else y - y0
    top = image[y0, x0] * (1 - fx) + image[y0, x0 + 1] * fx
    bottom = image[y0 + 1, x0] * (1 - fx) + image[y0 + 1, x0 + 1] * fx
    return top + (bottom - top) * fy


def gradient_noise(size, cells, seed):
    """Perlin noise and its two derivatives on a tile of size x size pixels with cells x cells lattice cells."""
    rng = np.random.default_rng(seed)
    angle = rng.uniform(0, 2 * np.pi, (cells, cells)).astype(F)
    gx, gy = np.cos(angle), np.sin(angle)
    p = (np.arange(size, dtype=F) + F(0.5)) * F(cells / size)
    i0 = p.astype(np.int32) % cells
    i1 = (i0 + 1) % cells
    f = p - np.floor(p)
    w = f * f * f * (f * (f * 6 - 15) + 10)
    fx, fy = f[None, :], f[:, None]
    wx, wy = w[None, :], w[:, None]

    def corner(iy, ix, dx, dy):
        return gx[np.ix_(iy, ix)] * dx + gy[np.ix_(iy, ix)] * dy

    top = mix(corner(i0, i0, fx, fy), corner(i0, i1, fx - 1, fy), wx)
    bottom = mix(corner(i1, i0, fx, fy - 1), corner(i1, i1, fx - 1, fy - 1), wx)
    return mix(top, bottom, wy) * F(1.5)


def fbm(size, cells, octaves, seed, gain=0.5):
    total = np.zeros((size, size), F)
    amplitude = 1.0
    for octave in range(octaves):
        if cells * 2 > size:
            break
        total += F(amplitude) * gradient_noise(size, cells, seed + octave * 101)
        amplitude *= gain
        cells *= 2
    return total


def warp(field, amount, seed, cells=4, octaves=4):
    """Moves each point of a tile by two noise fields; amount is in tiles."""
    size = field.shape[0]
    grid = (np.arange(size, dtype=F) + F(0.5)) / F(size)
    dx = fbm(size, cells, octaves, seed) * F(amount)
    dy = fbm(size, cells, octaves, seed + 7) * F(amount)
    half = F(0.5 / size)
    return sample(field, grid[None, :] + dx - half, grid[:, None] + dy - half)


def ridged(size, cells, octaves, seed, gain=0.5, sharpness=1.0):
    """Ridged multifractal: crests where the noise crosses zero, detail gathered on the crests."""
    total = np.zeros((size, size), F)
    weight = np.ones((size, size), F)
    amplitude = 1.0
    norm = 0.0
    for octave in range(octaves):
        if cells * 2 > size:
            break
        n = 1 - np.abs(gradient_noise(size, cells, seed + octave * 131))
        n = np.clip(n, 0, 1) ** F(1 + sharpness)
        total += F(amplitude) * n * weight
        weight = np.clip(n * F(1.6), 0, 1)
        norm += amplitude
        amplitude *= gain
        cells *= 2
    return total / F(norm)


def eroded(size, cells, octaves, seed, gain=0.5, strength=1.0):
    """Noise whose finer octaves fade on steep ground, which leaves smooth valley walls below rough crests."""
    total = np.zeros((size, size), F)
    sx = np.zeros((size, size), F)
    sy = np.zeros((size, size), F)
    amplitude = 1.0
    for octave in range(octaves):
        if cells * 2 > size:
            break
        n = gradient_noise(size, cells, seed + octave * 151)
        scale = F(size / cells)
        sx += (np.roll(n, -1, 1) - np.roll(n, 1, 1)) * scale * F(0.5)
        sy += (np.roll(n, -1, 0) - np.roll(n, 1, 0)) * scale * F(0.5)
        total += F(amplitude) * n / (1 + F(strength) * (sx * sx + sy * sy))
        amplitude *= gain
        cells *= 2
    return total


def box(image, radius, axis):
    if radius < 1:
        return image
    pad = [(0, 0)] * image.ndim
    pad[axis] = (radius + 1, radius)
    sums = np.cumsum(np.pad(image, pad, mode="edge"), axis=axis, dtype=np.float64)
    n = image.shape[axis]
    high = np.take(sums, np.arange(2 * radius + 1, 2 * radius + 1 + n), axis=axis)
    low = np.take(sums, np.arange(0, n), axis=axis)
    return ((high - low) / (2 * radius + 1)).astype(F)


def blur(image, sigma, sigma_y=None):
    """Three box blurs, which come close to a Gaussian of that deviation in pixels."""
    for axis, s in ((1, sigma), (0, sigma if sigma_y is None else sigma_y)):
        if s < 0.3:
            continue
        radius = max(1, int(round((np.sqrt(4 * s * s + 1) - 1) / 2)))
        for _ in range(3):
            image = box(image, radius, axis)
    return image


def disc_blur(image, radius):
    """The blur of a lens: each point becomes a disc of that radius in pixels."""
    rows, columns = image.shape[:2]
    pad = int(radius) + 2
    padded = np.pad(image, [(pad, pad), (pad, pad)] + [(0, 0)] * (image.ndim - 2), mode="edge")
    h, w = padded.shape[:2]
    y = np.minimum(np.arange(h), h - np.arange(h))[:, None]
    x = np.minimum(np.arange(w), w - np.arange(w))[None, :]
    kernel = np.clip(radius + 0.5 - np.sqrt(x * x + y * y), 0, 1)
    spectrum = np.fft.rfft2(kernel / kernel.sum())
    planes = padded[..., None] if image.ndim == 2 else padded
    out = [np.fft.irfft2(np.fft.rfft2(planes[..., c]) * spectrum, s=(h, w)) for c in range(planes.shape[-1])]
    out = np.stack(out, -1)[pad:pad + rows, pad:pad + columns].astype(F)
    return out[..., 0] if image.ndim == 2 else out
