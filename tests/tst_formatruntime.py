"""The example's form through PySide2. Arguments: the example's directory, the plugin directory."""
import sys
import unittest

EXAMPLE, PLUGINS = sys.argv[1:3]
sys.path.insert(0, EXAMPLE)

from form_at_run_time import load_form, on_change  # noqa: E402
from PySide2.QtTest import QTest  # noqa: E402
from PySide2.QtWidgets import QApplication, QLineEdit, QPushButton, QWidget  # noqa: E402


class FormAtRunTime(unittest.TestCase):
    def test_user_edits_reach_python(self):
        form = load_form(PLUGINS)
        classes = {child.metaObject().className() for child in form.findChildren(QWidget)}
        self.assertLessEqual({"QSliderEdit", "QIntSliderEdit", "QLabelEdit", "QVectorEdit", "QFileEdit",
                              "QPropertyPanel", "QAccordion", "QRenderWidget"}, classes)
        intensity = form.findChild(QWidget, "intensity")
        values = []
        on_change(intensity, values.append)
        intensity.setProperty("value", 2.5)
        field = intensity.findChild(QLineEdit, "lineEdit")
        self.assertEqual((field.text(), values), ("2.5", []))
        field.setText("7")
        QTest.keyClick(field, "\r")
        self.assertEqual(set(values), {7.0})
        intensity.findChild(QPushButton, "reset").click()
        self.assertEqual(values[-1], 1.0)


application = QApplication(sys.argv[:1])
unittest.main(argv=sys.argv[:1])
