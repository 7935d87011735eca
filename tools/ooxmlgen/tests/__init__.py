"""Unit tests of the generator on the small fixture schemas of fixtures/.

    python3 -m unittest discover -s tools/ooxmlgen/tests -t tools
"""
