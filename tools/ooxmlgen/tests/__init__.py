"""Unit tests of the generator on fixtures/: python3 -m unittest discover -s tools/ooxmlgen/tests -t tools"""
