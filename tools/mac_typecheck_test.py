"""mac_typecheck.py sees each kind of mistake when it is made in the files as they are."""
import os
import shutil
import sys
import tempfile
import unittest

import mac_typecheck

MAC = os.path.join(mac_typecheck.ROOT, "platform/mac")


class TypeCheckTest(unittest.TestCase):
    def complaint(self, name, right, wrong):
        """What the check says of a file of the backend in which `right` was replaced by `wrong`."""
        with open(os.path.join(MAC, name), encoding="utf-8") as file:
            text = file.read()
        self.assertIn(right, text, name)
        with tempfile.TemporaryDirectory() as folder:
            # Headers of the Objective-C++ files are checked by themselves.
            path = os.path.join(folder, name + ".mm" if name.endswith(".h") else name)
            with open(path, "w", encoding="utf-8") as file:
                file.write(text.replace(right, wrong))
            return mac_typecheck.check(path)

    def test_the_files_as_they_are_are_right(self):
        for name in ("appkit_overlay.mm", "mac_workspace.cpp"):
            self.assertEqual(self.complaint(name, "pintle", "pintle"), "")

    def test_a_misspelled_selector(self):
        self.assertIn("declares the selector 'orderFrontRegardles'",
                      self.complaint("appkit_overlay.mm", "orderFrontRegardless", "orderFrontRegardles"))

    def test_a_selector_that_the_class_does_not_have(self):
        self.assertIn("no visible @interface for 'NSWindow' declares the selector 'makeKeyAndFront'",
                      self.complaint("appkit_window.mm", "makeKeyWindow", "makeKeyAndFront"))

    def test_a_property_that_the_class_does_not_have(self):
        self.assertIn("property 'canhide' not found",
                      self.complaint("appkit_overlay.mm", "window_.canHide", "window_.canhide"))

    def test_an_enumeration_for_another_one(self):
        self.assertIn("from incompatible type",
                      self.complaint("appkit_layers.h", "material_.state = NSVisualEffectStateActive",
                                     "material_.state = NSVisualEffectBlendingModeBehindWindow"))

    def test_the_activation_that_guarantees_nothing_for_an_accessory(self):
        self.assertIn("declares the selector 'activate'",
                      self.complaint("appkit_application.mm", "[NSApp activateIgnoringOtherApps:YES]",
                                     "[NSApp activate]"))

    def test_an_argument_of_the_wrong_type(self):
        self.assertIn("incompatible pointer types assigning to 'NSColor * _Nullable' from 'NSString *'",
                      self.complaint("appkit_overlay.mm", "NSColor.clearColor", '@"clear"'))

    def test_a_missing_bridge(self):
        self.assertIn("requires a bridged cast",
                      self.complaint("appkit_cursor.mm", "(__bridge NSCursor*)object.get()",
                                     "(NSCursor*)object.get()"))

    def test_counting_references_by_hand(self):
        self.assertIn("ARC forbids explicit message send of 'retain'",
                      self.complaint("appkit_overlay.mm", "window_.hasShadow = NO;", "[window_ retain];"))

    def test_a_callback_of_the_wrong_type(self):
        self.assertIn("no matching function for call to 'CGDisplayRegisterReconfigurationCallback'",
                      self.complaint("mac_workspace.cpp", "CGDisplayChangeSummaryFlags flags,", "double flags,"))

    def test_an_error_of_the_wrong_type(self):
        self.assertIn("with an rvalue of type 'NSString *__strong *'",
                      self.complaint("mac_login_item_service.mm", "NSError* error = nil;", "NSString* error = nil;"))

    def test_a_block_of_the_wrong_type(self):
        self.assertIn("with an rvalue of type 'NSEvent *(^)(NSString *__strong)'",
                      self.complaint("mac_event_monitors.mm", "^NSEvent*(NSEvent* event)", "^NSEvent*(NSString* event)"))


if __name__ == "__main__":
    if not shutil.which(mac_typecheck.COMPILER):
        sys.exit(mac_typecheck.NO_COMPILER)
    unittest.main()
