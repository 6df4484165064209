"""What counts as growing, and what a life that is short or warms up may do."""
import unittest

from growth import Growth


def counts(descriptors=20, memory=10 << 20):
    return {"memory": memory, "descriptors": descriptors, "threads": 8, "resources": 30, "server": 0}


class GrowthTest(unittest.TestCase):
    def complaints(self, *counted):
        growth = Growth(None)
        growth.lives[1] = list(counted)
        return list(growth.complaints())

    def test_what_stays_the_same_is_not_growth(self):
        self.assertEqual(self.complaints(*[counts()] * 5), [])

    def test_descriptors_that_are_never_closed_are_named(self):
        found = self.complaints(*[counts(20 + 4 * at) for at in range(5)])
        self.assertEqual(found, ["descriptors grew from 24 to 36 within 5 counts"])

    def test_memory_that_comes_with_the_first_steps_is_not_growth(self):
        self.assertEqual(self.complaints(counts(), *[counts(memory=90 << 20)] * 3), [])

    def test_memory_that_comes_later_is(self):
        self.assertEqual(len(self.complaints(counts(), counts(), counts(memory=90 << 20))), 1)

    def test_a_short_life_tells_nothing(self):
        self.assertEqual(self.complaints(counts(), counts(90)), [])


if __name__ == "__main__":
    unittest.main()
