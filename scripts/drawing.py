"""Small pictures from filled outlines, with smooth edges. Coordinates run from 0 to 1, downwards."""

import functools
import math

ROWS = 8  # sub-rows of a pixel that an outline is measured on


class Canvas:
    """Red, green, blue and alpha, each 0 to 1, not multiplied; alpha says how much is there."""

    def __init__(self, width, height, back=None):
        self.width, self.height = width, height
        pixel = (0.0, 0.0, 0.0, 0.0) if back is None else (*colour(back), 1.0)
        self.pixels = [pixel] * (width * height)

    def fill(self, outline, paint, alpha=1.0, scale=None, at=(0.0, 0.0)):
        """Fills an outline of (x, y) points; `scale` pixels are 1, `at` is where 0, 0 falls."""
        scale = scale or self.width
        points = tuple((x * scale + at[0], y * scale + at[1]) for x, y in outline)
        over = colour(paint)
        for index, cover in coverage(points, self.width, self.height).items():
            self.blend(index, over, min(cover, 1.0) * alpha)

    def blend(self, index, over, amount):
        red, green, blue, alpha = self.pixels[index]
        total = amount + alpha * (1 - amount)
        if total <= 0:
            return
        mix = [(new * amount + old * alpha * (1 - amount)) / total
               for new, old in zip(over, (red, green, blue))]
        self.pixels[index] = (*mix, total)


def colour(text):
    return tuple(int(text[i:i + 2], 16) / 255 for i in (0, 2, 4))


@functools.lru_cache(maxsize=256)  # a clip's frames repeat their two pictures
def coverage(points, width, height):
    """Which part of each pixel lies inside, by the even-odd rule."""
    covered = {}
    edges = [(a, b) if a[1] < b[1] else (b, a)
             for a, b in zip(points, points[1:] + points[:1]) if a[1] != b[1]]
    top = max(0, int(min(y for _, y in points)))
    bottom = min(height, int(max(y for _, y in points)) + 1)
    for row in range(top * ROWS, bottom * ROWS):
        y = (row + 0.5) / ROWS
        crossings = sorted(a[0] + (y - a[1]) * (b[0] - a[0]) / (b[1] - a[1])
                           for a, b in edges if a[1] <= y < b[1])
        for left, right in zip(crossings[::2], crossings[1::2]):
            left, right = max(left, 0.0), min(right, float(width))
            x = int(left)
            while x < right:
                part = min(right, x + 1) - max(left, x)
                index = (row // ROWS) * width + x
                covered[index] = covered.get(index, 0.0) + part / ROWS
                x += 1
    return covered


def box(left, top, right, bottom, radius=0.0):
    if radius == 0:
        return [(left, top), (right, top), (right, bottom), (left, bottom)]
    points = []
    for x, y, start in ((right - radius, top + radius, -90), (right - radius, bottom - radius, 0),
                        (left + radius, bottom - radius, 90), (left + radius, top + radius, 180)):
        for step in range(9):
            angle = math.radians(start + step * 90 / 8)
            points.append((x + radius * math.cos(angle), y + radius * math.sin(angle)))
    return points


def disc(x, y, radius):
    return [(x + radius * math.cos(math.radians(a)), y + radius * math.sin(math.radians(a)))
            for a in range(0, 360, 6)]


def down_arrow(x, top, bottom, half_shaft, half_head, head):
    return [(x - half_shaft, top), (x + half_shaft, top), (x + half_shaft, bottom - head),
            (x + half_head, bottom - head), (x, bottom), (x - half_head, bottom - head),
            (x - half_shaft, bottom - head)]


def folder(draw):
    draw(box(0.06, 0.17, 0.46, 0.40, 0.05), "C98F1B")
    draw(box(0.06, 0.25, 0.94, 0.84, 0.05), "C98F1B")
    draw(box(0.09, 0.28, 0.91, 0.50, 0.03), "E2AE3E")
    draw(box(0.06, 0.36, 0.94, 0.84, 0.05), "F7CE6B")
    draw(box(0.06, 0.36, 0.94, 0.40, 0.02), "FBDF97")


def open_folder(draw):
    draw(box(0.06, 0.17, 0.46, 0.40, 0.05), "C98F1B")
    draw(box(0.06, 0.25, 0.86, 0.84, 0.05), "C98F1B")
    draw(box(0.13, 0.31, 0.80, 0.70), "FFFFFF")
    draw([(0.20, 0.44), (0.98, 0.44), (0.86, 0.84), (0.06, 0.84)], "F7CE6B")
    draw([(0.20, 0.44), (0.98, 0.44), (0.967, 0.485), (0.187, 0.485)], "FBDF97")


def protected_folder(draw):
    folder(draw)
    shield = [(0.68, 0.42), (0.82, 0.48), (0.96, 0.48), (0.96, 0.68), (0.90, 0.84), (0.68, 0.98),
              (0.46, 0.84), (0.40, 0.68), (0.40, 0.48), (0.54, 0.48)]
    draw(shield, "FFFFFF")
    inner = [(0.68 + (x - 0.68) * 0.84, 0.69 + (y - 0.69) * 0.84) for x, y in shield]
    draw(inner, "1F5FBF")
    draw([(x, y) for x, y in inner if x <= 0.68], "3E83E8")


def page(draw, left, top, right, bottom, lines):
    corner = (right - left) * 0.30
    edge = 0.035
    draw([(left, top), (right - corner, top), (right, top + corner), (right, bottom),
          (left, bottom)], "6E7B8B")
    draw([(left + edge, top + edge), (right - corner - 0.01, top + edge),
          (right - edge, top + corner + 0.01), (right - edge, bottom - edge),
          (left + edge, bottom - edge)], "FFFFFF")
    draw([(right - corner, top), (right, top + corner), (right - corner, top + corner)], "B9C4D0")
    height = bottom - top
    for i in range(lines):
        y = top + height * (0.40 + 0.16 * i)
        draw(box(left + 0.11, y, right - 0.11, y + 0.045), "7FA8DB")


def files(draw):
    page(draw, 0.08, 0.06, 0.64, 0.76, 3)
    page(draw, 0.34, 0.24, 0.92, 0.96, 3)


def backup_set(draw):
    page(draw, 0.10, 0.05, 0.78, 0.95, 3)
    teeth = []
    for i in range(32):
        angle = math.radians(i * 360 / 32)
        radius = 0.25 if i % 4 in (0, 1) else 0.19
        teeth.append((0.70 + radius * math.cos(angle), 0.70 + radius * math.sin(angle)))
    draw(teeth, "2B5C9E")
    draw(disc(0.70, 0.70, 0.08), "FFFFFF")


def archive(draw):
    draw(box(0.12, 0.22, 0.88, 0.94, 0.04), "9A6A32")
    draw(box(0.15, 0.36, 0.85, 0.91, 0.02), "D9A35C")
    draw(box(0.06, 0.10, 0.94, 0.36, 0.04), "9A6A32")
    draw(box(0.09, 0.13, 0.91, 0.33, 0.02), "E8BC7E")
    draw(box(0.43, 0.10, 0.57, 0.62), "F4F6F8")
    for i in range(5):
        left = 0.43 if i % 2 else 0.50
        draw(box(left, 0.13 + i * 0.10, left + 0.07, 0.18 + i * 0.10), "59636E")


def destination(draw):
    draw(down_arrow(0.50, 0.04, 0.54, 0.10, 0.24, 0.25), "2E8B57")
    draw([(0.16, 0.46), (0.84, 0.46), (0.96, 0.64), (0.04, 0.64)], "D5DAE0")
    draw(down_arrow(0.50, 0.04, 0.58, 0.10, 0.24, 0.25), "2E8B57")
    draw(box(0.04, 0.64, 0.96, 0.92, 0.04), "6E7B8B")
    draw(box(0.07, 0.67, 0.93, 0.89, 0.02), "AEB8C3")
    draw(box(0.13, 0.75, 0.55, 0.81), "6E7B8B")
    draw(disc(0.81, 0.78, 0.055), "35C26B")


def product(draw):
    draw(box(0.03, 0.03, 0.97, 0.97, 0.18), "123E7C")
    draw(box(0.06, 0.06, 0.94, 0.94, 0.15), "1E5FB8")
    draw(box(0.06, 0.06, 0.94, 0.46, 0.15), "2E74D0")
    draw(box(0.06, 0.30, 0.94, 0.46), "2A6DC6")
    draw(down_arrow(0.50, 0.15, 0.63, 0.10, 0.24, 0.25), "FFFFFF")
    draw([(0.16, 0.56), (0.27, 0.56), (0.27, 0.74), (0.73, 0.74), (0.73, 0.56), (0.84, 0.56),
          (0.84, 0.85), (0.16, 0.85)], "FFD166")


PICTURES = {f.__name__: f for f in (product, folder, open_folder, protected_folder, backup_set,
                                    files, archive, destination)}
