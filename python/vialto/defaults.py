"""Settings that a highway at 25 mm is usually judged by, under their names.

They are what is taken where nothing else is asked for. The guide tells where each comes from.
"""

# Ride
LONGEST_SMOOTHED_INTERVAL = 0.167  #: m; below it the 250 mm average belongs (ASTM E1926)
SECTION = 100.0  #: m; of a report's table
TENTH_OF_A_MILE = 160.9344  #: m; of a network's table
LOCAL_BASE_LENGTH = 7.62  #: m; of the moving IRI, 25 feet (AASHTO R 54)
LOCAL_ROUGHNESS = 2.5  #: m/km; a moving IRI above it is a place to correct: 160 inches a mile
RIDE_NUMBER_SPEED = 80.46  #: km/h; 50 miles an hour

# Spectrum and straightedge
POINTS_PER_OCTAVE = 12  #: of the frequencies of a spectrum
STRAIGHTEDGE = 3.0  #: m (EN 13036-7)

# Profilograph: a usual machine, and how its trace is counted
#: m; twelve wheels in two groups, at the ends of a beam of 25 feet
TWELVE_WHEELS = (1.905, 2.286, 2.667, 3.048, 3.429, 3.81)
BLANKING_BAND = 2.54  #: mm; 0.1 inch
SCALLOP_WIDTH = 0.6  #: m; 2 feet
SCALLOP_HEIGHT = 0.889  #: mm; 0.035 inch
SCALLOP_ROUNDING = 1.27  #: mm; 0.05 inch

# Grinding: a usual machine, and when it is worth its way
GRINDER_WHEEL_BASE = 5.5  #: m; 18 feet
GRINDER_HEAD_POSITION = 0.5  #: of the wheel base
GRINDER_TANDEM_SPREAD = 0.9  #: m; 3 feet
GRINDER_WHEEL_LENGTH = 0.3  #: m; 1 foot
GRINDER_DEPTH_MM = 8.0  #: mm
GRIND_THRESHOLD = 0.002  #: m/m; a moving IRI of 2 m/km
GRIND_LENGTH = 0.3  #: m; of the shortest spot
GRIND_GAP = 0.3  #: m; the smallest between two spots

# Joints of concrete pavement
JOINT_SPACING = 4.572  #: m; 15 feet
JOINT_WINDOW_MM = 100.0  #: mm; to either side of a joint

# Comparison and anti-smoothing
LARGEST_OFFSET = 3.0  #: m; to either side
ANTI_SMOOTHING_LENGTH = 0.25  #: m
