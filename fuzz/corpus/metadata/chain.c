symbolic: chain.c
version: 1.0.0
dependency: chain.b,1.0
