"""The bank directory as data: its records, the files under data/ and the lists they come from."""
