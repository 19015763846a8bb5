symbolic: cycle.y
version: 1.0.0
dependency: cycle.x,1.0.0
