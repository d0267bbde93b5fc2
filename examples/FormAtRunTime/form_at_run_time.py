#!/usr/bin/env python3
"""Shows LightForm.ui with PySide2. The widgets need no Python bindings: their plugin is enough.

Usage: form_at_run_time.py PLUGINS/designer
"""
import pathlib
import sys

from PySide2.QtCore import QObject, SIGNAL
from PySide2.QtUiTools import QUiLoader
from PySide2.QtWidgets import QApplication, QWidget

FORM = pathlib.Path(__file__).with_name("LightForm.ui")


def load_form(plugin_directory):
    """The form as a QWidget; its children are plain QWidgets to Python, with all their properties and signals."""
    loader = QUiLoader()
    loader.addPluginPath(str(plugin_directory))
    form = loader.load(str(FORM), None)
    if form is None:
        raise RuntimeError(loader.errorString())
    return form


def on_change(editor, function):
    """Calls the function with the new value whenever the user changes it."""
    QObject.connect(editor, SIGNAL("valueChanged()"), lambda: function(editor.property("value")))


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    application = QApplication(sys.argv[:1])
    form = load_form(sys.argv[1])
    intensity = form.findChild(QWidget, "intensity")
    intensity.setProperty("value", 2.5)
    on_change(intensity, lambda value: print(f"{value:g} klx"))
    form.show()
    return application.exec_()


if __name__ == "__main__":
    sys.exit(main())
