"""The table of a tour: one row a look, and a count at the end."""

#: More pointers than that may not need the pointer to move before they are right.
MOST_SECOND_LOOKS = 5


class Report:
    def __init__(self, quiet=False):
        """`quiet` prints only the rows that are not plainly good."""
        self.quiet = quiet
        self.good = 0
        self.exceptions = {}
        self.failures = []
        self.second_looks = []

    def stage(self, title):
        self.title = title
        print(f"\n== {title}", flush=True)

    def row(self, point, shown, verdict, failed=False, exception=False):
        if failed:
            self.failures.append(f"{self.title}: {point.label}: {verdict}")
        elif exception:
            self.exceptions[point.label] = point.exception
        else:
            self.good += 1
        if failed or exception or not self.quiet:
            mark = "FAIL" if failed else "note" if exception else "ok"
            print(f"  {mark:4} {point.application:15} {point.place:20} {shown.name or '(no name)':20} "
                  f"{shown.size:8} {verdict}", flush=True)

    def second_look(self, point, complaint):
        """A pointer that was right only when it had moved away and back. A few of them are reported, many fail."""
        self.second_looks.append(f"{self.title}: {point.label}: {complaint}")
        print(f"  look {point.application:15} {point.place:20} once more: {complaint}", flush=True)

    def check(self, what, holds, detail=""):
        """A statement about the whole, not about one point."""
        if holds:
            self.good += 1
        else:
            self.failures.append(f"{self.title}: {what} {detail}".rstrip())
        if not holds or not self.quiet:
            print(f"  {'ok' if holds else 'FAIL':4} {what} {'' if holds else detail}".rstrip(), flush=True)

    def close(self):
        """Prints the summary; true when nothing failed."""
        if self.exceptions:
            print("\nKnown exceptions (not the theme's, and why):")
            for label, reason in self.exceptions.items():
                print(f"  {label}: {reason}")
        if len(self.second_looks) > MOST_SECOND_LOOKS:
            self.failures.append(f"{len(self.second_looks)} pointers needed a second look")
        for failure in self.failures:
            print("FAILED " + failure)
        print(f"\n{self.good} looks as expected, {len(self.failures)} failed, "
              f"{len(self.exceptions)} known exceptions, {len(self.second_looks)} second looks", flush=True)
        return not self.failures
