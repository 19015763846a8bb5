symbolic: chain.b
version: 1.0.0
dependency: chain.a,1.0.0
