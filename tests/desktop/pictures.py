"""Pictures of the really drawn pointer, cut from the file into which the virtual X server draws."""
import os
import subprocess

SIDE = 128
ENLARGED = "200%"


class Pictures:
    def __init__(self, desktop, folder):
        self.desktop = desktop
        self.folder = folder
        self.places = []
        self.stages = []
        os.makedirs(folder, exist_ok=True)
        for name in os.listdir(folder):
            if name.endswith((".png", ".pam")):
                os.remove(os.path.join(folder, name))

    def path(self, name):
        return os.path.join(self.folder, name + ".png")

    def screen(self):
        return "xwd:" + os.path.join(self.desktop.drawn, "Xvfb_screen0")

    def take(self, stage, points):
        """The whole screen with the pointer on the first point, and a close look at each; answers the drawn
        pixels of each point as a hash."""
        self.stages.append(stage)
        self.places = [point.label for point in points]
        drawn = []
        for index, point in enumerate(points):
            self.desktop.probe.move(point.x, point.y)
            self.desktop.probe.settle(150, 1000)
            if index == 0:
                subprocess.run(["convert", self.screen(), self.path(stage)], check=True)
            crop = f"{SIDE}x{SIDE}+{point.x - SIDE // 2}+{point.y - SIDE // 2}"
            target = self.path(f"{stage}-{index}")
            subprocess.run(["convert", self.screen(), "-crop", crop, "+repage", target], check=True)
            drawn.append(subprocess.run(["identify", "-format", "%#", target], check=True, capture_output=True,
                                        text=True).stdout)
        return drawn

    def side_by_side(self):
        """All close looks in one picture, pointers.png: a row a stage, a column a place."""
        rows = []
        for stage in self.stages:
            tiles = [self.path(f"{stage}-{index}") for index in range(len(self.places))]
            rows += ["(", *tiles, "-filter", "point", "-resize", ENLARGED, "-bordercolor", "white", "-border", "4",
                     "-gravity", "west", "-background", "white", "(", "-size", "200x40", "-gravity", "center",
                     f"label:{stage}", ")", "-insert", "0", "+append", ")"]
        subprocess.run(["convert", *rows, "-append", self.path("pointers")], check=True)
        for stage in self.stages:
            for index in range(len(self.places)):
                os.remove(self.path(f"{stage}-{index}"))
