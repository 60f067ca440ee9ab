# SPDX-License-Identifier: MIT
"""The parts of the practice tool, one purpose each; the script beside this folder only reads the command line."""
