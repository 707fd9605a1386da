#!/usr/bin/python3
"""Writes data/sample/sample.gallery: the galleries, the order of the pictures and all their texts."""

import pathlib
from xml.sax.saxutils import quoteattr

SAMPLE = pathlib.Path(__file__).resolve().parents[2] / "data" / "sample"
# A picture that is not found under its path is looked for by its name, beside the project and one folder
# below. So the folder named here need not exist.
ROOT = "/sample"
PAGE = "index.html"
PORTFOLIO, MOSAIC, JOURNAL = (f"/sample/templates/{name}.xml" for name in ("portfolio", "mosaic", "journal"))
PAPER, INK, WALL, FILM = (f"/sample/styles/{name}.xml" for name in ("paper", "ink", "gallery-wall", "film"))
STRING = "8"
# Laid over the large pictures, in black or white by what lies below.
SIGNATURE, LARGE, BOTTOM_RIGHT = "© Vistorama sample", 2, 10

GALLERIES = [
    {
        "name": "Wide Open",
        "description": "Hills, weather and small things found on the way. Three galleries lie on top; "
                       "the single pictures follow.",
        "folder": "",
        "layout": PORTFOLIO,
        "style": PAPER,
        "children": [1, 2, 3],
        "pictures": [
            ("Frühling über den Hügeln.jpg", "Frühling über den Hügeln", "Yellow fields between the woods, and the clouds keep moving."),
            ("River Stones.jpg", "River Stones", "Where the current sorts them, and the last rain has not dried."),
            ("Dunes at Dawn.jpg", "Dunes at Dawn", "Ten minutes of long shadows, then the light goes flat."),
            ("Morning Dew.jpg", "Morning Dew", "Every drop holds the garden upside down."),
            ("Storm over the Wheat.jpg", "Storm over the Wheat", "Four seconds between the flash and the thunder."),
            ("Misty Morning.jpg", "Misty Morning", "The fog came up from the valley and stayed in the spruces."),
            ("October.jpg", "October", "The last warm afternoon."),
            ("Canyon Light.jpg", "Canyon Light", "Each band is a sea floor, a desert, a river that is gone."),
            ("Old Wood.jpg", "Old Wood", "The south wall of the barn, sixty summers on."),
            ("Golden Grass.jpg", "Golden Grass", "Against the sun, a hand's breadth above the ground."),
            ("Rain on the Window.png", "Rain on the Window", "Waiting for the bus, evening traffic."),
            ("Snowfall.jpg", "Snowfall", "The first flakes that stay."),
        ],
    },
    {
        "name": "Mountains",
        "description": "From the first snow to the last light on the ridge.",
        "folder": "Mountains/",
        "layout": MOSAIC,
        "style": FILM,
        "children": [],
        "pictures": [
            ("Above the Clouds.jpg", "Above the Clouds", "Only the summits are left of the country."),
            ("Alpenglow.jpg", "Alpenglow", "It lasts as long as it takes to change the lens."),
            ("First Snow.jpg", "First Snow", "The north faces keep what falls now until June."),
            ("Blue Ridges.jpg", "Blue Ridges", "Seven ridges; the map says there are nine."),
            ("High Pass.jpg", "High Pass", "Two valleys, two weathers."),
            ("Winter Valley.jpg", "Winter Valley", "A cold clear noon after three days of snow."),
            ("Scouting Shot.bmp", "Scouting Shot", "Taken with the small camera, to remember where to come back to."),
        ],
    },
    {
        "name": "By the Water",
        "description": "Lakes, tides and the open sea.",
        "folder": "By the Water/",
        "layout": JOURNAL,
        "style": WALL,
        "children": [],
        "pictures": [
            ("Mirror Lake.jpg", "Mirror Lake", "Before the wind wakes up."),
            ("Abend am See.jpg", "Abend am See", "The sun has gone behind the hill and the water keeps the colour."),
            ("Open Sea.jpg", "Open Sea", "Force four, and nothing else in sight."),
            ("Low Tide.jpg", "Low Tide", "The sea leaves its drawing in the sand."),
            ("Last Light.jpg", "Last Light", "A quarter of an hour west of everything."),
            ("Still Water.jpg", "Still Water", "Fog on the tarn, six in the morning."),
        ],
    },
    {
        "name": "Night",
        "description": "What the eye gets used to after twenty minutes in the dark.",
        "folder": "Night/",
        "layout": MOSAIC,
        "style": INK,
        "children": [],
        "pictures": [
            ("Milky Way.jpg", "Milky Way", "Thirty seconds on a tripod, no moon."),
            ("Aurora.jpg", "Aurora", "It moved faster than the shutter."),
            ("City Lights.jpg", "City Lights", "From the other bank, just after sunset."),
            ("Waxing Moon.png", "Waxing Moon", "Two days before it is full."),
            ("Midnight.jpg", "Midnight", "The last minute of the year."),
            ("Lit Windows.gif", "Lit Windows", "Eight lamps, eight evenings."),
        ],
    },
]


def element(tag, attributes, *children):
    text = "".join(f" {name}={quoteattr(str(value))}" for name, value in attributes.items())
    inner = "".join(children)
    return f"<{tag}{text}>{inner}</{tag}>" if inner else f"<{tag}{text}/>"


def variables(tag, values):
    return "".join(element(tag, {"bstrVal": value, "name": name, "vt": STRING}) for name, value in sorted(values.items()))


def picture(folder, name, title, description):
    texts = variables("picture_variable", {"title": title, "description": description})
    return element("picture", {"path": f"{ROOT}/{folder}{name}", "angle": 0}, texts)


def text_stamp(index):
    is_large = index == LARGE
    return element("text_stamp", {
        "index": index, "position": BOTTOM_RIGHT if is_large else 0, "margin": 16 if is_large else 10,
        "font": "DejaVu Serif" if is_large else "MS Sans Serif", "text": SIGNATURE if is_large else "",
        "font_size": 14 if is_large else 8, "font_style": 2 if is_large else 0, "color": 0})


def stamps():
    image = [element("image_stamp", {"index": i, "position": 0, "margin": 10, "file": "", "transparency": 0}) for i in range(3)]
    return "".join(image + [text_stamp(i) for i in range(3)])


def gallery(index, data):
    entries = [element("picture", {"index": child}) for child in data["children"]]
    entries += [picture(data["folder"], *texts) for texts in data["pictures"]]
    texts = {"name": data["name"], "title": data["name"], "description": data["description"]}
    return element(
        "gallery", {"index": index},
        element("style", {"template": data["layout"], "template_page": PAGE, "css": data["style"]}),
        element("picture_list", {}, *entries),
        variables("project_variable", texts),
        stamps(),
    )


def project():
    return element(
        "project", {"version": "2.0", "root_gallery_index": 0, "current_gallery_index": 0},
        element("project_folders", {"recent_folder": ""}),
        *(gallery(index, data) for index, data in enumerate(GALLERIES)),
        element("deploy_settings", {"folder": "", "destination_kind": 0, "redeploy_mode": 1, "ftp_destination": -1,
                                    "ftp_directory": "", "open_browser_after_deploy": 1}),
    )


def main():
    names = [texts[0] for data in GALLERIES for texts in data["pictures"]]
    assert len(names) == len(set(names)), "a picture is found again by its name alone"
    (SAMPLE / "sample.gallery").write_text(project(), encoding="utf-8")


if __name__ == "__main__":
    main()
