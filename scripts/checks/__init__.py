"""The rules behind scripts/check, one module each."""
