"""ooxmlgen: generates the ooxml library's classes from the bound XSDs."""
