"""The folders and files of src/ as their include lines and CMake lists tell them. Used by draw-includes and tidy."""

import re
from pathlib import Path

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
ADD_FOLDER = re.compile(r"^\s*add_folder\(([^)]*)\)", re.MULTILINE)
KEYWORDS = {"MAY_INCLUDE", "LINKS", "PUBLIC_LINKS", "SOURCES"}


class HouseError(Exception):
    """What the house can't be read for, in one line."""


class SourceTree:
    """lists: library ("effects", "shell/look") -> the libraries that its add_folder lists in MAY_INCLUDE.
    includes: file -> files of the tree that its include lines name. All paths are below the root, with "/"."""

    def __init__(self, root):
        self.root = Path(root)
        self.lists = {}
        for cmake in sorted(self.root.rglob("CMakeLists.txt")):
            self._read_list(cmake)
        files = [file for pattern in ("*.h", "*.cpp") for file in self.root.rglob(pattern)]
        names = {file.relative_to(self.root).as_posix() for file in files}
        self.includes = {
            name: [line for line in INCLUDE.findall(self.read(name)) if line in names] for name in sorted(names)
        }

    def read(self, name):
        return (self.root / name).read_text(encoding="utf-8")

    def _read_list(self, cmake):
        folder = cmake.parent.relative_to(self.root).as_posix()
        text = re.sub(r"#.*", "", cmake.read_text(encoding="utf-8"))
        for call in ADD_FOLDER.findall(text):
            words = call.split()
            if words[0] != folder:
                raise HouseError(f"{cmake}: add_folder({words[0]}) stands in {folder}")
            listed, keyword = [], None
            for word in words[1:]:
                if word in KEYWORDS:
                    keyword = word
                elif keyword == "MAY_INCLUDE":
                    listed.append(word)
            self.lists[folder] = listed

    def library_of(self, name):
        """The innermost library around the file, or the folder of a file that no library has, as of a main function."""
        folders = [parent.as_posix() for parent in Path(name).parents]
        return next((folder for folder in folders if folder in self.lists), folders[0])

    def room_of(self, name):
        """The library, or its sub-folder that the file is in."""
        library = self.library_of(name)
        rest = name[len(library) + 1 :].split("/")
        return library if len(rest) == 1 else f"{library}/{rest[0]}"

    def floors(self):
        """Library -> number of its floor: 1 if it lists none, else one more than the highest that it lists."""
        floors = {}

        def floor_of(library, way):
            if library in way:
                ring = [*way[way.index(library) :], library]
                raise HouseError("The lists MAY_INCLUDE make a circle: " + " -> ".join(ring))
            if library not in self.lists:
                raise HouseError(f"{way[-1]} lists {library}, which is no folder of the house")
            if library not in floors:
                below = [floor_of(other, [*way, library]) for other in self.lists[library]]
                floors[library] = 1 + max(below, default=0)
            return floors[library]

        for library in self.lists:
            floor_of(library, [])
        return floors

    def closure(self, name):
        """The file and all files of the tree that it includes, directly or not."""
        found, todo = {name}, [name]
        while todo:
            for other in self.includes[todo.pop()]:
                if other not in found:
                    found.add(other)
                    todo.append(other)
        return sorted(found)
