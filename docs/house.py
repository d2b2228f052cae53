#!/usr/bin/env python3
"""Draws docs/house.svg: the folders of src/ on their floors, and which uses which.

Without arguments the picture is written; with --check it is compared with what is there. What it shows is the include table
(tests/checks/include_table.py), without the arrows that follow from others.
"""
import pathlib
import sys
from xml.sax.saxutils import escape

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/checks"))
sys.dont_write_bytecode = True
from include_table import TABLE  # noqa: E402  (found by the line above)

PICTURE = ROOT / "docs/house.svg"
WIDTH, MARGIN = 1280, 30
BOX_HEIGHT, FLOOR_HEIGHT, GAP = 34, 84, 16
LETTER = 7.4  # width of one in a box

# Roof -> fill and line of its boxes.
COLOURS = {
    "app": ("#e8f1fd", "#3b78c9"),
    "cli": ("#e8f1fd", "#3b78c9"),
    "core-cli": ("#e8f1fd", "#3b78c9"),
    "machine": ("#fdeede", "#c4731a"),
    "session": ("#e6f6ea", "#2f8f4a"),
    "speech": ("#f3eafc", "#8152bd"),
    "translation": ("#fdeaf1", "#bf4478"),
    "platform": ("#eef0f2", "#66727f"),
}
OTHERS = ("#fffbe6", "#9a8420")


def folders():
    """The include table with the window as one folder: its parts stand side by side."""
    table = {}
    for folder, row in TABLE.items():
        roof = "app" if folder.startswith("app/") else folder
        used = {"app" if other.startswith("app/") else other for other in row.split()} - {roof}
        table[roof] = sorted(used.union(table.pop(roof, [])))
    return table


def used_by(table):
    """Folder -> the folders it uses, all the way down."""
    closure = {}
    for folder, row in table.items():  # from the bottom up
        closure[folder] = set(row).union(*(closure[used] for used in row)) if row else set()
    return closure


def floors(table):
    """Folders by floor, from the ground: each as high as those that use it allow."""
    depth = {}
    for folder in reversed(table):
        users = [user for user, row in table.items() if folder in row]
        depth[folder] = 1 + max((depth[user] for user in users), default=-1)
    return [[f for f in table if depth[f] == n] for n in range(max(depth.values()), -1, -1)]


def placed(rows, arrows):
    """Folder -> middle and width of its box. Every floor is ordered by where the folders it uses stand."""
    place = {}
    for row in rows:
        def middle(folder):
            below = [place[used][0] for used in arrows[folder] if used in place]
            return sum(below) / len(below) if below else WIDTH / 2
        ordered = sorted(row, key=lambda folder: (middle(folder), folder))
        widths = [26 + LETTER * len(folder) for folder in ordered]
        free = WIDTH - 2 * MARGIN - sum(widths)
        gap = free / (len(ordered) + 1)
        if gap < GAP:
            sys.exit(f"no room for {', '.join(ordered)} on one floor")
        x = MARGIN + gap
        for folder, width in zip(ordered, widths):
            place[folder] = (x + width / 2, width)
            x += width + gap
    return place


def picture():
    table = folders()
    below = used_by(table)
    arrows = {folder: [used for used in row if not any(used in below[other] for other in row)] for folder, row in table.items()}
    rows = floors(table)
    place = placed(rows, arrows)
    height = 2 * MARGIN + FLOOR_HEIGHT * (len(rows) - 1) + BOX_HEIGHT
    top = {folder: height - MARGIN - BOX_HEIGHT - FLOOR_HEIGHT * n for n, row in enumerate(rows) for folder in row}

    lines = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height}" viewBox="0 0 {WIDTH} {height}" role="img">',
        "<title>The folders of src/ and which uses which</title>",
        f'<rect width="{WIDTH}" height="{height}" rx="12" fill="#ffffff"/>',
        '<defs><marker id="head" viewBox="0 0 8 8" refX="7" refY="4" markerWidth="7" markerHeight="7" orient="auto">'
        '<path d="M0 0.8 7.5 4 0 7.2z" fill="#8a94a0"/></marker></defs>',
        '<g fill="none" stroke="#8a94a0" stroke-width="1.1" marker-end="url(#head)">',
    ]
    for folder, row in arrows.items():
        for used in row:
            (x1, _), (x2, _) = place[folder], place[used]
            y1, y2 = top[folder] + BOX_HEIGHT, top[used] - 1
            bend = (y2 - y1) / 2
            lines.append(f'<path d="M{x1:.0f} {y1} C{x1:.0f} {y1 + bend:.0f} {x2:.0f} {y2 - bend:.0f} {x2:.0f} {y2}"/>')
    lines.append("</g>")
    lines.append('<g font-family="ui-monospace, DejaVu Sans Mono, monospace" font-size="12.3" text-anchor="middle">')
    for folder, (x, width) in place.items():
        fill, line = COLOURS.get(folder.split("/")[0], OTHERS)
        lines.append(f'<rect x="{x - width / 2:.0f}" y="{top[folder]}" width="{width:.0f}" height="{BOX_HEIGHT}" rx="7" '
                     f'fill="{fill}" stroke="{line}"/>')
        lines.append(f'<text x="{x:.0f}" y="{top[folder] + 21}" fill="#1c2530">{escape(folder)}</text>')
    lines += ["</g>", "</svg>", ""]
    return "\n".join(lines)


def main():
    drawn = picture()
    if sys.argv[1:] == ["--check"]:
        if PICTURE.read_text(encoding="utf-8") != drawn:
            sys.exit("docs/house.svg does not show the include table of today: run docs/house.py")
    else:
        PICTURE.write_text(drawn, encoding="utf-8")


if __name__ == "__main__":
    main()
