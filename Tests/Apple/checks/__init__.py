"""What script/check-apple holds the module against, a subject a module."""
