# Functions that the pages name lead to their documentation.
s/`(kipi[A-Za-z0-9]*_[A-Za-z0-9_]*)`/@ref \1 "\1"/g
