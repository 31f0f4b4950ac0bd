"""Settings that a highway at 25 mm is usually judged by, under their names."""

SECTION = 100.0  #: m; of a report's table
TENTH_OF_A_MILE = 160.9344  #: m; of a network's table
LOCAL_BASE_LENGTH = 7.62  #: m; of the moving IRI, 25 feet (AASHTO R 54)
LOCAL_ROUGHNESS = 2.5  #: m/km; a moving IRI above it is a place to correct: 160 inches a mile
